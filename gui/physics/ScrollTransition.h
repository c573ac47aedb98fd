#pragma once

#include "Friction.h"
#include "InterpolatedValue.h"
#include "OrbisUIFrameworkExport.h"

/// Feeds an animated value from a Scroll: the friction glide and, past an end, the
/// spring that brings the content back. The scroll's positions are relative to
/// origin, which lets the same model spring back to any single point.
class ORBIS_UI_EXPORT ScrollTransition : public InterpolatedValue::Transition
{
public:
    ScrollTransition(const Scroll& scroll, double epsilon, double origin = 0.0);

    double update(const ElapsedTimer& timer) override;
    bool isDone(const ElapsedTimer& timer) override;
    double velocity(const ElapsedTimer& timer) override;
    /// Once the spring has taken over, the value lands exactly on its end.
    bool hasTarget() const override { return mScroll.inSpringMode(); }
    double target() const override { return mOrigin + mScroll.springEnd(); }

private:
    Scroll mScroll;
    double mEpsilon;
    double mOrigin;
};
