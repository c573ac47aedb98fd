#include "Clock.h"

#include <atomic>
#include <chrono>

namespace {
MonotonicClock gSystemClock;
std::atomic<Clock*> gClock{nullptr};
} // namespace

qint64 MonotonicClock::nowNanoseconds() const
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

Clock* Clock::current()
{
    Clock* c = gClock.load(std::memory_order_acquire);
    return c ? c : &gSystemClock;
}

Clock* Clock::install(Clock* clock)
{
    return gClock.exchange(clock, std::memory_order_acq_rel);
}
