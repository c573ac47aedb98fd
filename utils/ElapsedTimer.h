#pragma once

#include "OrbisUtilsExport.h"

#include <QtGlobal>

/// Measures time on the process-wide Clock. Reading a timer that was never started
/// (or was invalidated) reports the assertion "isValid()" and reads as 0.
class ORBIS_UTILS_EXPORT ElapsedTimer
{
public:
    ElapsedTimer() = default;

    void start();
    qint64 restart(); ///< milliseconds elapsed before the restart
    void invalidate() { mStart = kInvalid; }
    bool isValid() const { return mStart != kInvalid; }

    qint64 elapsed() const; ///< milliseconds
    qint64 nsecsElapsed() const;
    double secondsElapsed() const;
    bool hasExpired(qint64 timeoutMs) const;

    /// The clock reading at start, in milliseconds (0 when invalid).
    qint64 startedAtMs() const { return isValid() ? mStart / 1000000 : 0; }

private:
    static constexpr qint64 kInvalid = Q_INT64_C(-0x7fffffffffffffff) - 1;
    qint64 mStart = kInvalid;
};
