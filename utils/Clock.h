#pragma once

#include <QtGlobal>

// The process-wide monotonic clock behind every elapsed time the framework reads.
// Tests install a ManualClock and advance it instead of sleeping.
class Clock
{
public:
    virtual ~Clock() = default;
    virtual qint64 nowNanoseconds() const = 0;

    qint64 nowMilliseconds() const { return nowNanoseconds() / 1000000; }

    static Clock* current();
    // Installs a clock (not owned) and returns the previous one; nullptr restores the system clock.
    static Clock* install(Clock* clock);
};

// Steady system time.
class MonotonicClock : public Clock
{
public:
    qint64 nowNanoseconds() const override;
};
