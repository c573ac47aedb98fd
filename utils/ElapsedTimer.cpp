#include "ElapsedTimer.h"

#include "Clock.h"
#include "Logger.h"

static const char* const kLogSource = "../../../utils/ElapsedTimer";

void ElapsedTimer::start()
{
    mStart = Clock::current()->nowNanoseconds();
}

qint64 ElapsedTimer::restart()
{
    const qint64 now = Clock::current()->nowNanoseconds();
    const qint64 before = isValid() ? (now - mStart) / 1000000 : 0;
    mStart = now;
    return before;
}

qint64 ElapsedTimer::nsecsElapsed() const
{
    if (!ORBIS_ASSERT(isValid(), QStringLiteral("isValid()")))
        return 0;
    return Clock::current()->nowNanoseconds() - mStart;
}

qint64 ElapsedTimer::elapsed() const
{
    return nsecsElapsed() / 1000000;
}

double ElapsedTimer::secondsElapsed() const
{
    return double(nsecsElapsed()) / 1e9;
}

bool ElapsedTimer::hasExpired(qint64 timeoutMs) const
{
    return timeoutMs >= 0 && elapsed() > timeoutMs;
}
