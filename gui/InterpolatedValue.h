#pragma once

#include "Easing.h"
#include "ElapsedTimer.h"
#include "OrbisUIFrameworkExport.h"

#include <QList>
#include <deque>
#include <memory>

/// An animated number: a current value and a queue of transitions that move it.
///
/// A value is advanced by whoever owns it: calling update(false) once per frame
/// recomputes the value from the running transition and the time since that
/// transition started, and moves on through the queue as transitions finish.
/// View animations are advanced by DisplayDevice::updateAnimations(); other owners
/// (scroll handlers, for example) call update(false) from their view's tick().
///
/// A value with transitions to run is registered in a process-wide list of active
/// values (active()); it leaves the list when its queue runs dry, when it is stopped
/// and when it is destroyed. activeValues() lets the frame loop see whether anything
/// is still moving.
class ORBIS_UI_EXPORT InterpolatedValue
{
public:
    enum EaseType
    {
        Delay = 0,
        Linear,
        EaseOutExpo,
        EaseInExpo,
        EaseInOutExpo,
        EaseInOutElastic,
        EaseInOutCubic,
        EaseInOutCubicDampened,
        EaseOutQuad,
        EaseInQuad,
        EaseTypeCount
    };

    using EaseFunc = Easing::Function;
    static const EaseFunc gEaseFuncs[EaseTypeCount];

    /// One step of an animation. The timer passed in was started when the
    /// transition became the running one; it is never invalid while the
    /// transition runs.
    class Transition
    {
    public:
        virtual ~Transition() = default;
        /// Called just before the transition becomes the running one.
        virtual void aboutToStart(const ElapsedTimer& timer);
        /// Called once the transition runs and its timer has started.
        virtual void start();
        /// The value at the timer's current reading.
        virtual double update(const ElapsedTimer& timer) = 0;
        virtual bool isDone(const ElapsedTimer& timer) = 0;
        /// Units per second.
        virtual double velocity(const ElapsedTimer& timer);
        virtual bool nearTarget(const ElapsedTimer& timer, double tolerance);
        /// Whether the transition ends at a value known in advance (target()).
        virtual bool hasTarget() const;
        virtual double target() const;
    };

    class StandardTransition;
    class BoundedDeclerateTransition;

    explicit InterpolatedValue(double value = 0.0);
    virtual ~InterpolatedValue();
    InterpolatedValue(const InterpolatedValue&) = delete;
    InterpolatedValue& operator=(const InterpolatedValue&) = delete;

    double value() const { return mValue; }
    operator double() const { return mValue; }
    /// Jumps to the value; queued transitions are dropped.
    void setValue(double value);

    bool active() const { return mActive; }
    /// Advances to the clock's current time (or, with finish, through the whole
    /// queue at once). Returns whether the value changed.
    bool update(bool finish = false);
    /// Drops the queue and leaves the active list. The value stays where the running
    /// transition has it now or, with jumpToTarget, moves to where the queue would end.
    void stopUpdating(bool jumpToTarget = false);
    void clearTransitions();
    /// Takes ownership. With replace, the queued and running transitions are dropped.
    void addTransition(Transition* transition, bool replace = false);

    /// Queues an eased move to target over duration seconds after delay seconds.
    /// The move starts from the end of the queue (or, with replace, from the
    /// current value). An unknown ease type queues nothing.
    void ease(double target, double duration, double delay, EaseType type, bool replace = false);
    void ease(double target, double duration, double delay, EaseFunc func, bool replace = false);
    /// Holds the value for duration seconds (at the end of the queue, or at value).
    void delay(double duration, bool replace = false);
    void delay(double duration, double value, bool replace = false);
    /// Decelerates from the current value with the given velocity, staying within
    /// [lower, upper]; see BoundedDeclerateTransition for the timing parameters.
    void boundedDecelerate(double velocity, double lower, double upper, double timeConstant,
                           double approachDuration, bool replace = false);

    double getVelocity();
    /// Whether the value is within tolerance of where its queue ends (true when idle).
    bool nearTarget(double tolerance);
    /// Where the queue ends, when that is known in advance; otherwise the current value.
    double finalTarget() const;

    static EaseFunc getEaseFunc(EaseType type);
    static const QList<InterpolatedValue*>& activeValues();

private:
    bool startNext();
    void setActive(bool active);
    double queueEnd() const;

    double mValue;
    std::deque<std::unique_ptr<Transition>> mTransitions;
    ElapsedTimer mTimer;
    bool mActive = false;
};
