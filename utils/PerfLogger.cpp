#include "PerfLogger.h"

#include "Logger.h"

#include <algorithm>

static const char* const kLogSource = "../../../utils/PerfLogger";

PerfLogger::Span::Span(const QString& name) : mName(name)
{
    mTimer.start();
}

PerfLogger::Span::~Span()
{
    PerfLogger::instance().record(mName, mTimer.nsecsElapsed());
}

PerfLogger& PerfLogger::instance()
{
    static PerfLogger logger;
    return logger;
}

void PerfLogger::record(const QString& name, qint64 nanoseconds)
{
    std::lock_guard<std::mutex> lock(mMutex);
    Stats& s = mStats[name];
    s.minNs = s.count ? std::min(s.minNs, nanoseconds) : nanoseconds;
    s.maxNs = s.count ? std::max(s.maxNs, nanoseconds) : nanoseconds;
    s.totalNs += nanoseconds;
    s.lastNs = nanoseconds;
    ++s.count;
}

PerfLogger::Stats PerfLogger::stats(const QString& name) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mStats.value(name);
}

QStringList PerfLogger::names() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    QStringList n = mStats.keys();
    n.sort();
    return n;
}

void PerfLogger::reset()
{
    std::lock_guard<std::mutex> lock(mMutex);
    mStats.clear();
}

void PerfLogger::dump() const
{
    for (const QString& name : names()) {
        const Stats s = stats(name);
        ORBIS_INFO(QStringLiteral("Perf %1 count %2 mean %3 ms min %4 ms max %5 ms")
                       .arg(name)
                       .arg(s.count)
                       .arg(s.meanMs(), 0, 'f', 3)
                       .arg(s.minNs / 1e6, 0, 'f', 3)
                       .arg(s.maxNs / 1e6, 0, 'f', 3));
    }
}
