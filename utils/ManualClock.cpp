#include "ManualClock.h"

ManualClock::ManualClock(qint64 startMs) : mNow(startMs * 1000000), mPrevious(Clock::install(this)) {}

ManualClock::~ManualClock()
{
    Clock::install(mPrevious);
}
