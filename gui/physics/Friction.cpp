#include "Friction.h"

#include "Logger.h"
#include "MathUtils.h"

#include <cmath>

static const char* const kLogSource = "../../../gui/physics/Friction";

Scroll::Scroll(float drag, float k, float damping, float extent)
    : mDrag(drag), mDragLog(std::log(drag)), mSpring(1.0f, k, damping, Spring::AnimateToEnd), mExtent(extent)
{
    ORBIS_ASSERT(mDragLog != 0, QStringLiteral("mDragLog != 0"));
}

void Scroll::reset(long long ms, float x, float v, float extent)
{
    mExtent = extent;
    mP0 = x;
    mU0 = v;
    // Content dragged or flung past an end bounces back without its own velocity.
    if ((x > 0 && v >= 0) || (x < -extent && v <= 0))
        handOver(ms, x, x > 0 ? 0.0f : -extent, 0);
    else
        mSpringMode = false;
}

float Scroll::x(long long ms, double epsilon)
{
    if (mSpringMode)
        return mSpring.done(ms) ? mSpring.end() : mSpring.x(ms);

    const double t = double(ms) / 1000.0;
    const float p = frictionX(t);
    float u = frictionDx(t);
    // Only a clear positive speed counts as moving; everything else is at rest here.
    if (u < epsilon)
        u = 0;
    if (p > epsilon || (p < -mExtent - epsilon && u <= 0)) {
        handOver(ms, p, p > 0 ? 0.0f : -mExtent, u);
        return mSpring.x(ms);
    }
    if (u != 0)
        return p;
    return MathUtils::clamp(p, -mExtent, 0.0f);
}

float Scroll::dx(long long ms) const
{
    return mSpringMode ? mSpring.dx(ms) : frictionDx(double(ms) / 1000.0);
}

bool Scroll::done(long long ms, double epsilon) const
{
    if (mSpringMode)
        return std::fabs(mSpring.x(ms) - mSpring.end()) < epsilon;
    return std::fabs(frictionDx(double(ms) / 1000.0)) <= epsilon;
}

float Scroll::frictionX(double t) const
{
    // Without friction (drag 1) the decay degenerates to uniform motion.
    if (mDragLog == 0)
        return float(mP0 + mU0 * t);
    return float(mP0 + mU0 * std::pow(double(mDrag), t) / mDragLog - mU0 / mDragLog);
}

float Scroll::frictionDx(double t) const
{
    return float(mU0 * std::pow(double(mDrag), t));
}

void Scroll::handOver(long long ms, float position, float end, float velocity)
{
    mSpringMode = true;
    mSpring.snapEnd(ms, position);
    mSpring.setEnd(ms, end, velocity);
}
