#pragma once

#include "OrbisUIFrameworkExport.h"

#include <cstdint>

/// A damped spring solved in closed form, so that scrolling code can ask for the
/// position and velocity at any frame time instead of stepping a simulation.
/// Times come in as milliseconds of the caller's clock; the solution runs in seconds.
class ORBIS_UI_EXPORT Spring
{
public:
    enum SolutionType : int32_t
    {
        Snapped = 0,
        CriticallyDamped = 1,
        Overdamped = 2,
        Underdamped = 3
    };

    /// Doubles as the "placed" flag: a spring built with SnapFirstEnd jumps to the
    /// first end it is given instead of animating from wherever it was.
    enum SnapBehavior : int32_t
    {
        SnapFirstEnd = 0,
        AnimateToEnd = 1
    };

    static constexpr float kTolerance = 0.001f;

    Spring(float mass, float k, float damping, SnapBehavior snap);

    /// Starts a new solution from displacement p0 (relative to the end) and velocity u0.
    void solve(float p0, float u0);
    float computeX(float t) const;
    float computeDx(float t) const;

    void snapEnd(long long ms, float end);
    void setEnd(long long ms, float end, float velocity);
    float x(long long ms) const;
    float dx(long long ms) const;
    bool done(long long ms) const;
    void reconfigure(long long ms, float mass, float k, float damping);

    SolutionType springType() const { return mType; }
    float end() const { return mEnd; }

private:
    float elapsed(long long ms) const;
    /// Speeds and offsets are compared after truncation to whole units, so anything
    /// below one unit counts as settled; this ends animations sooner.
    static bool withinTolerance(float value);

    SolutionType mType = Snapped;
    float mMass;
    float mK;
    float mDamping;
    float mR1 = 0;
    float mR2 = 0;
    float mC1 = 0;
    float mC2 = 0;
    float mOmega = 0;
    float mEnd = 0;
    double mStart = 0;
    SnapBehavior mSnap;
};
