#include "LogCapture.h"

LogCapture::LogCapture() : mPrevious(Logger::setSink(this)) {}

LogCapture::~LogCapture()
{
    Logger::setSink(mPrevious);
}

void LogCapture::write(const LogRecord& record)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mRecords.append(record);
}

QList<LogRecord> LogCapture::records() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mRecords;
}

QStringList LogCapture::messages() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    QStringList out;
    for (const LogRecord& r : mRecords)
        out << r.message;
    return out;
}

QStringList LogCapture::assertions() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    QStringList out;
    for (const LogRecord& r : mRecords)
        if (r.isAssertion)
            out << r.message;
    return out;
}

bool LogCapture::contains(const QString& message) const
{
    return count(message) > 0;
}

int LogCapture::count(const QString& message) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    int n = 0;
    for (const LogRecord& r : mRecords)
        if (r.message == message)
            ++n;
    return n;
}

void LogCapture::clear()
{
    std::lock_guard<std::mutex> lock(mMutex);
    mRecords.clear();
}
