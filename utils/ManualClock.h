#pragma once

#include "Clock.h"
#include "OrbisUtilsExport.h"

#include <atomic>

/// A clock that only moves when told. Installs itself for its lifetime and restores
/// the previous clock afterwards.
class ORBIS_UTILS_EXPORT ManualClock : public Clock
{
public:
    explicit ManualClock(qint64 startMs = 1000);
    ~ManualClock() override;
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    qint64 nowNanoseconds() const override { return mNow.load(); }

    void advanceMs(qint64 ms) { mNow.fetch_add(ms * 1000000); }
    void advanceNs(qint64 ns) { mNow.fetch_add(ns); }
    void advanceSeconds(double s) { mNow.fetch_add(qint64(s * 1e9)); }
    void setMs(qint64 ms) { mNow.store(ms * 1000000); }

private:
    std::atomic<qint64> mNow;
    Clock* mPrevious;
};
