#include "ScrollTransition.h"

ScrollTransition::ScrollTransition(const Scroll& scroll, double epsilon, double origin)
    : mScroll(scroll), mEpsilon(epsilon), mOrigin(origin)
{}

double ScrollTransition::update(const ElapsedTimer& timer)
{
    return mOrigin + mScroll.x(timer.elapsed(), mEpsilon);
}

bool ScrollTransition::isDone(const ElapsedTimer& timer)
{
    return mScroll.done(timer.elapsed(), mEpsilon);
}

double ScrollTransition::velocity(const ElapsedTimer& timer)
{
    return mScroll.dx(timer.elapsed());
}
