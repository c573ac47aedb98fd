#pragma once

#include "OrbisUtilsExport.h"

#include <QString>
#include <functional>

class QLoggingCategory;

/// A message that went through the logger, as sinks receive it.
struct ORBIS_UTILS_EXPORT LogRecord
{
    enum Level
    {
        Info,
        Warn,
        Error
    };

    Level level = Info;
    QString message;
    /// The logging category of the source ("orbis.gui.view"); "orbis" when unknown.
    const char* category = "orbis";
    /// The source path ("../../../gui/DisplayView"), when the caller gave one.
    QString file;
    /// Set only for assertions: the failed condition text ("false" when unconditional)
    /// and the line.
    bool isAssertion = false;
    QString condition;
    int line = 0;

    static const char* levelWord(Level level);
};

/// Receives every log record. Installed sinks replace the default stderr output.
class ORBIS_UTILS_EXPORT LogSink
{
public:
    virtual ~LogSink() = default;
    virtual void write(const LogRecord& record) = 0;
};

/// The single logging channel of the framework. Misuse and bad input go through
/// logAssert, which never throws and never aborts (unless ORBIS_ASSERT_ABORT=1 is
/// set in the environment, for debugging); the caller then returns without effect
/// or carries on.
///
/// Each source path belongs to a QLoggingCategory ("gui/DisplayView" to
/// "orbis.gui.view", "graphics/..." to "orbis.gfx", "maps/..." to "orbis.maps"), so
/// QT_LOGGING_RULES and QLoggingCategory::setFilterRules() filter the framework's
/// records before any sink sees them: INFO records follow a category's `debug` and
/// `info` rules (either switches them off), WARN its `warning` rule and ERROR,
/// assertions included, its `critical` rule.
class ORBIS_UTILS_EXPORT Logger
{
public:
    static void log(LogRecord::Level level, const QString& message, const char* source = nullptr);
    /// Records without a source, in the category "orbis"; framework code uses
    /// ORBIS_INFO, ORBIS_WARN and ORBIS_ERROR, which pass the file's source path.
    static void info(const QString& message) { log(LogRecord::Info, message); }
    static void warn(const QString& message) { log(LogRecord::Warn, message); }
    static void error(const QString& message) { log(LogRecord::Error, message); }

    /// Always returns false, so that callers can write `return Logger::logAssert(...)`.
    static bool logAssert(const char* condition, const QString& message, const char* file, int line);

    /// Installs a sink (not owned) and returns the previous one; nullptr restores stderr.
    static LogSink* setSink(LogSink* sink);
    static LogSink* sink();

    /// The stderr line for a record: level word first, one line per message.
    static QString format(const LogRecord& record);

    /// The category of a source path (leading "../" ignored); "orbis" for nullptr
    /// and for paths outside the framework's folders.
    static const QLoggingCategory& category(const char* source);
    /// Whether a record of this level from this source passes the category's rules.
    static bool isEnabled(LogRecord::Level level, const char* source);
};

// Reports a failed condition through Logger::logAssert with the condition's own
// text. Evaluates to whether the condition held. The file must define kLogSource,
// the source path that messages carry ("../../../gui/DisplayView").
#define ORBIS_ASSERT(cond, message)                                                                          \
    (static_cast<bool>(cond) ? true : Logger::logAssert(#cond, (message), kLogSource, __LINE__))
#define ORBIS_FAIL(message) Logger::logAssert("false", (message), kLogSource, __LINE__)
// Plain records in the category of the file's kLogSource.
#define ORBIS_INFO(message) Logger::log(LogRecord::Info, (message), kLogSource)
#define ORBIS_WARN(message) Logger::log(LogRecord::Warn, (message), kLogSource)
#define ORBIS_ERROR(message) Logger::log(LogRecord::Error, (message), kLogSource)
