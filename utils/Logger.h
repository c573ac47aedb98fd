#pragma once

#include <QString>
#include <functional>

// A message that went through the logger, as sinks receive it.
struct LogRecord
{
    enum Level
    {
        Info,
        Warn,
        Error
    };

    Level level = Info;
    QString message;
    // Set only for assertions: the failed condition text ("false" when unconditional),
    // the source path and the line.
    bool isAssertion = false;
    QString condition;
    QString file;
    int line = 0;

    static const char* levelWord(Level level);
};

// Receives every log record. Installed sinks replace the default stderr output.
class LogSink
{
public:
    virtual ~LogSink() = default;
    virtual void write(const LogRecord& record) = 0;
};

// The single logging channel of the framework. Misuse and bad input go through
// logAssert, which never throws and never aborts (unless ORBIS_ASSERT_ABORT=1 is
// set in the environment, for debugging); the caller then returns without effect
// or carries on.
class Logger
{
public:
    static void log(LogRecord::Level level, const QString& message);
    static void info(const QString& message) { log(LogRecord::Info, message); }
    static void warn(const QString& message) { log(LogRecord::Warn, message); }
    static void error(const QString& message) { log(LogRecord::Error, message); }

    // Always returns false, so that callers can write `return Logger::logAssert(...)`.
    static bool logAssert(const char* condition, const QString& message, const char* file, int line);

    // Installs a sink (not owned) and returns the previous one; nullptr restores stderr.
    static LogSink* setSink(LogSink* sink);
    static LogSink* sink();

    // The stderr line for a record: level word first, one line per message.
    static QString format(const LogRecord& record);
};

// Reports a failed condition through Logger::logAssert with the condition's own
// text. Evaluates to whether the condition held. The file must define kLogSource,
// the source path that messages carry ("../../../gui/DisplayView").
#define ORBIS_ASSERT(cond, message)                                                                 \
    (static_cast<bool>(cond) ? true : Logger::logAssert(#cond, (message), kLogSource, __LINE__))
#define ORBIS_FAIL(message) Logger::logAssert("false", (message), kLogSource, __LINE__)
