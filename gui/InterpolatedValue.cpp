#include "InterpolatedValue.h"

#include "BoundedDeclerateTransition.h"
#include "Logger.h"
#include "StandardTransition.h"

#include <cmath>

static const char* const kLogSource = "../../../gui/InterpolatedValue";

namespace {
QList<InterpolatedValue*>& activeList()
{
    static QList<InterpolatedValue*> list;
    return list;
}
} // namespace

const InterpolatedValue::EaseFunc InterpolatedValue::gEaseFuncs[EaseTypeCount] = {
    Easing::delay,         Easing::linear,           Easing::easeOutExpo,    Easing::easeInExpo,
    Easing::easeInOutExpo, Easing::easeInOutElastic, Easing::easeInOutCubic, Easing::easeInOutCubicDampened,
    Easing::easeOutQuad,   Easing::easeInQuad,
};

void InterpolatedValue::Transition::aboutToStart(const ElapsedTimer&) {}

void InterpolatedValue::Transition::start() {}

double InterpolatedValue::Transition::velocity(const ElapsedTimer&)
{
    return 0;
}

bool InterpolatedValue::Transition::nearTarget(const ElapsedTimer& timer, double tolerance)
{
    return hasTarget() && std::abs(target() - update(timer)) <= tolerance;
}

bool InterpolatedValue::Transition::hasTarget() const
{
    return false;
}

double InterpolatedValue::Transition::target() const
{
    return 0;
}

InterpolatedValue::InterpolatedValue(double value) : mValue(value) {}

InterpolatedValue::~InterpolatedValue()
{
    setActive(false);
}

InterpolatedValue::EaseFunc InterpolatedValue::getEaseFunc(EaseType type)
{
    if (int(type) < 0 || int(type) >= EaseTypeCount) {
        ORBIS_FAIL(QStringLiteral("Unknown Type:%1").arg(int(type)));
        return nullptr;
    }
    return gEaseFuncs[type];
}

const QList<InterpolatedValue*>& InterpolatedValue::activeValues()
{
    return activeList();
}

void InterpolatedValue::setActive(bool active)
{
    if (active == mActive)
        return;
    mActive = active;
    if (active)
        activeList().append(this);
    else
        activeList().removeOne(this);
}

void InterpolatedValue::setValue(double value)
{
    clearTransitions();
    mValue = value;
}

void InterpolatedValue::clearTransitions()
{
    mTransitions.clear();
    mTimer.invalidate();
    setActive(false);
}

bool InterpolatedValue::startNext()
{
    if (mTransitions.empty())
        return false;
    Transition* next = mTransitions.front().get();
    next->aboutToStart(mTimer);
    mTimer.start();
    next->start();
    return true;
}

void InterpolatedValue::addTransition(Transition* transition, bool replace)
{
    if (!ORBIS_ASSERT(transition, QStringLiteral("Null transition")))
        return;
    if (replace)
        stopUpdating(false);
    mTransitions.emplace_back(transition);
    if (mTransitions.size() == 1)
        startNext();
    setActive(true);
}

bool InterpolatedValue::update(bool finish)
{
    const double old = mValue;
    if (finish) {
        stopUpdating(true);
        return mValue != old;
    }
    while (!mTransitions.empty()) {
        Transition* running = mTransitions.front().get();
        mValue = running->update(mTimer);
        if (!running->isDone(mTimer))
            break;
        if (running->hasTarget())
            mValue = running->target();
        mTransitions.pop_front();
        startNext();
    }
    if (mTransitions.empty())
        clearTransitions();
    return mValue != old;
}

double InterpolatedValue::queueEnd() const
{
    if (!mTransitions.empty() && mTransitions.back()->hasTarget())
        return mTransitions.back()->target();
    return mValue;
}

double InterpolatedValue::finalTarget() const
{
    return queueEnd();
}

void InterpolatedValue::stopUpdating(bool jumpToTarget)
{
    if (!mTransitions.empty()) {
        // Without a jump the value stays where the running transition has it now, so
        // that a retarget starts from the true position rather than the last frame's.
        const bool known = jumpToTarget && mTransitions.back()->hasTarget();
        mValue = known ? mTransitions.back()->target() : mTransitions.front()->update(mTimer);
    }
    clearTransitions();
}

void InterpolatedValue::ease(double target, double duration, double delay, EaseType type, bool replace)
{
    if (EaseFunc func = getEaseFunc(type))
        ease(target, duration, delay, func, replace);
}

void InterpolatedValue::ease(double target, double duration, double delay, EaseFunc func, bool replace)
{
    if (!ORBIS_ASSERT(func, QStringLiteral("Null easing function")))
        return;
    if (replace)
        stopUpdating(false);
    const double start = queueEnd();
    if (delay > 0)
        addTransition(new StandardTransition(Easing::delay, start, start, delay));
    addTransition(new StandardTransition(func, start, target, duration));
}

void InterpolatedValue::delay(double duration, bool replace)
{
    if (replace)
        stopUpdating(false);
    const double at = queueEnd();
    addTransition(new StandardTransition(Easing::delay, at, at, duration));
}

void InterpolatedValue::delay(double duration, double value, bool replace)
{
    if (replace)
        stopUpdating(false);
    addTransition(new StandardTransition(Easing::delay, value, value, duration));
}

void InterpolatedValue::boundedDecelerate(double velocity, double lower, double upper, double timeConstant,
                                          double approachDuration, bool replace)
{
    if (replace)
        stopUpdating(false);
    addTransition(
        new BoundedDeclerateTransition(*this, mValue, velocity, lower, upper, timeConstant, approachDuration),
        false);
}

double InterpolatedValue::getVelocity()
{
    return mTransitions.empty() ? 0 : mTransitions.front()->velocity(mTimer);
}

bool InterpolatedValue::nearTarget(double tolerance)
{
    if (mTransitions.empty())
        return true;
    if (mTransitions.size() == 1)
        return mTransitions.front()->nearTarget(mTimer, tolerance);
    return mTransitions.back()->hasTarget() && std::abs(queueEnd() - mValue) <= tolerance;
}
