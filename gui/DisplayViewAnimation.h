#pragma once

#include "InterpolatedValue.h"
#include "OrbisUIFrameworkExport.h"

class DisplayView;

/// The running animation of one view: an animated value per property, advanced by the
/// device once per frame and applied to the view.
class ORBIS_UI_EXPORT DisplayViewAnimation
{
public:
    enum Property
    {
        X,
        Y,
        Width,
        Height,
        Alpha,
        Scale,
        Angle,
        Brightness,
        PropertyCount
    };

    explicit DisplayViewAnimation(DisplayView* view) : mView(view) {}

    DisplayView* view() const { return mView; }
    /// Retargets the property from where it is now.
    void animate(Property property, double target, double duration, InterpolatedValue::EaseType ease,
                 double delay);
    /// Appends a move to the property's queue, after the running one.
    void queue(Property property, double target, double duration, InterpolatedValue::EaseType ease);
    /// Drops the property's animation, leaving the view as it is.
    void stop(Property property);
    bool isAnimating(Property property) const { return mValues[property].active(); }
    double target(Property property) const { return mValues[property].finalTarget(); }
    bool isRunning() const;
    /// Advances every property to now and applies it; returns whether any is still running.
    bool update();
    /// Jumps every property to its target.
    void finish();

    /// Set by a fade with show/hide: the view hides once the animation completes.
    bool hideWhenDone = false;

private:
    double current(Property property) const;
    void apply(bool changed[PropertyCount]);

    DisplayView* mView;
    InterpolatedValue mValues[PropertyCount];
};
