#pragma once

#include "OrbisUtilsExport.h"

#include <QtGlobal>

/// The process-wide monotonic clock behind every elapsed time the framework reads.
/// Tests install a ManualClock and advance it instead of sleeping.
class ORBIS_UTILS_EXPORT Clock
{
public:
    virtual ~Clock() = default;
    virtual qint64 nowNanoseconds() const = 0;

    qint64 nowMilliseconds() const { return nowNanoseconds() / 1000000; }

    static Clock* current();
    /// Installs a clock (not owned) and returns the previous one; nullptr restores the system clock.
    static Clock* install(Clock* clock);
};

/// Steady system time.
class ORBIS_UTILS_EXPORT MonotonicClock : public Clock
{
public:
    qint64 nowNanoseconds() const override;
};
