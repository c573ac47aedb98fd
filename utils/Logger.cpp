#include "Logger.h"

#include <QMutex>
#include <QMutexLocker>
#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

std::atomic<LogSink*> gSink{nullptr};

QMutex& stderrMutex()
{
    static QMutex mutex;
    return mutex;
}

bool abortOnAssert()
{
    static const bool enabled = qEnvironmentVariableIntValue("ORBIS_ASSERT_ABORT") != 0;
    return enabled;
}

void deliver(const LogRecord& record)
{
    if (LogSink* sink = gSink.load()) {
        sink->write(record);
        return;
    }
    const QByteArray line = Logger::format(record).toLocal8Bit();
    QMutexLocker lock(&stderrMutex());
    std::fprintf(stderr, "%s\n", line.constData());
    std::fflush(stderr);
}

} // namespace

const char* LogRecord::levelWord(Level level)
{
    switch (level) {
    case Info:
        return "INFO";
    case Warn:
        return "WARN";
    case Error:
        return "ERROR";
    }
    return "ERROR";
}

void Logger::log(LogRecord::Level level, const QString& message)
{
    LogRecord record;
    record.level = level;
    record.message = message;
    deliver(record);
}

bool Logger::logAssert(const char* condition, const QString& message, const char* file, int line)
{
    LogRecord record;
    record.level = LogRecord::Error;
    record.message = message;
    record.isAssertion = true;
    record.condition = QString::fromUtf8(condition ? condition : "false");
    record.file = QString::fromUtf8(file ? file : "");
    record.line = line;
    deliver(record);
    if (abortOnAssert())
        std::abort();
    return false;
}

LogSink* Logger::setSink(LogSink* sink)
{
    return gSink.exchange(sink);
}

LogSink* Logger::sink()
{
    return gSink.load();
}

QString Logger::format(const LogRecord& record)
{
    QString text = QString::fromLatin1(LogRecord::levelWord(record.level));
    if (record.isAssertion)
        text += QStringLiteral(" ASSERT(%1) %2:%3").arg(record.condition, record.file).arg(record.line);
    text += QLatin1Char(' ');
    // One line per message: embedded line breaks would split a record.
    QString message = record.message;
    message.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return text + message;
}
