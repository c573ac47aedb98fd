#include "ScrollHandler.h"

#include "ConfigValue.h"
#include "Friction.h"
#include "MathUtils.h"
#include "ScrollTransition.h"

#include <cmath>

static ConfigRealValue gUnderscrollTracking("gui/underscroll_tracking", 0.2);

ScrollHandler::ScrollHandler(float drag, float k, float damping, float doneThreshold)
    : mDrag(drag), mK(k), mDamping(damping), mDoneThreshold(doneThreshold)
{}

void ScrollHandler::onTouchStart(float position)
{
    mRaw = position;
    mTouching = false;
    setValue(position);
}

void ScrollHandler::onTouchMove(float delta)
{
    mRaw += delta;
    mTouching = true;
    setValue(calculateUnderscrollPos());
}

void ScrollHandler::onTouchEnd(float velocity)
{
    if (!mTouching)
        velocity = 0;
    mTouching = false;
    startScrollAnimation(velocity);
}

void ScrollHandler::startScrollAnimation(float velocity)
{
    Scroll scroll(mDrag, mK, mDamping, float(mExtent));
    scroll.reset(0, float(value()), velocity, float(mExtent));
    addTransition(new ScrollTransition(scroll, mDoneThreshold), true);
}

double ScrollHandler::calculateUnderscrollPos() const
{
    const double inside = MathUtils::clamp(mRaw, -mExtent, 0.0);
    return inside + gUnderscrollTracking.value() * (mRaw - inside);
}

void ScrollHandler::reconfigureConstants(float drag, float k, float damping)
{
    mDrag = drag;
    mK = k;
    mDamping = damping;
}

void ScrollHandler::stopScrolling()
{
    stopUpdating(false);
    mRaw = value();
    mTouching = false;
}

void ScrollHandler::resetToBounds(bool animated)
{
    const double inside = MathUtils::clamp(value(), -mExtent, 0.0);
    if (inside != value())
        moveTo(inside, animated);
}

void ScrollHandler::resetToStart(bool animated)
{
    moveTo(0.0, animated);
}

void ScrollHandler::setExtent(float extent)
{
    // Content shorter than the view has nowhere to scroll.
    mExtent = std::max(0.0f, extent);
}

void ScrollHandler::scroll(float delta, bool animated)
{
    moveTo(finalTarget() + delta, animated);
}

void ScrollHandler::moveTo(double target, bool animated)
{
    mRaw = target;
    // Under one unit the spring would not start; the jump is invisible anyway.
    if (!animated || std::fabs(value() - target) < 1.0) {
        setValue(target);
        return;
    }
    // A scroll over an empty range around the target is a plain spring to it.
    Scroll spring(mDrag, mK, mDamping, 0.0f);
    spring.reset(0, float(value() - target), 0.0f, 0.0f);
    addTransition(new ScrollTransition(spring, mDoneThreshold, target), true);
}
