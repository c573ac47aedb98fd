#pragma once

#include "ElapsedTimer.h"
#include "OrbisUtilsExport.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <mutex>

/// Timing spans by name ("DisplayDevice-RenderViews", "loadConfiguration") with
/// per-name statistics, measured on the framework clock.
class ORBIS_UTILS_EXPORT PerfLogger
{
public:
    /// The timings of one named span.
    struct Stats
    {
        qint64 count = 0;
        qint64 totalNs = 0;
        qint64 minNs = 0;
        qint64 maxNs = 0;
        qint64 lastNs = 0;
        double meanMs() const { return count ? double(totalNs) / count / 1e6 : 0.0; }
    };

    /// Times one span from construction to destruction.
    class Span
    {
    public:
        explicit Span(const QString& name);
        ~Span();
        Span(const Span&) = delete;
        Span& operator=(const Span&) = delete;

    private:
        QString mName;
        ElapsedTimer mTimer;
    };

    static PerfLogger& instance();

    void record(const QString& name, qint64 nanoseconds);
    Stats stats(const QString& name) const;
    QStringList names() const;
    void reset();
    /// One INFO line per name: count, mean, min, max in milliseconds.
    void dump() const;

private:
    mutable std::mutex mMutex;
    QHash<QString, Stats> mStats;
};
