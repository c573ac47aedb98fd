#pragma once

#include "OrbisUIFrameworkExport.h"
#include "Spring.h"

/// Free friction decay inside the scroll range that hands over to a spring when the
/// content runs past either end. Positions run from 0 down to minus the extent.
/// Times are milliseconds since the caller's own origin (the reset).
class ORBIS_UI_EXPORT Scroll
{
public:
    Scroll(float drag, float k, float damping, float extent);

    void reset(long long ms, float x, float v, float extent);
    float x(long long ms, double epsilon);
    float dx(long long ms) const;
    bool done(long long ms, double epsilon) const;

    bool inSpringMode() const { return mSpringMode; }
    float springEnd() const { return mSpring.end(); }

private:
    float frictionX(double t) const;
    float frictionDx(double t) const;
    void handOver(long long ms, float position, float end, float velocity);

    float mDrag; ///< share of the velocity left after one second
    float mDragLog;
    float mP0 = 0;
    float mU0 = 0;
    bool mSpringMode = false;
    Spring mSpring;
    float mExtent;
};
