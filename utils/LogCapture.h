#pragma once

#include "Logger.h"
#include "OrbisUtilsExport.h"

#include <QList>
#include <QStringList>
#include <mutex>

/// Collects log records while it lives, replacing the current sink; tests use it to
/// assert exact messages. Thread-safe: records from other threads are captured too.
class ORBIS_UTILS_EXPORT LogCapture : public LogSink
{
public:
    LogCapture();
    ~LogCapture() override;
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    void write(const LogRecord& record) override;

    QList<LogRecord> records() const;
    QStringList messages() const;
    QStringList assertions() const; ///< messages of assertion records only
    bool contains(const QString& message) const;
    int count(const QString& message) const;
    void clear();

private:
    mutable std::mutex mMutex;
    QList<LogRecord> mRecords;
    LogSink* mPrevious;
};
