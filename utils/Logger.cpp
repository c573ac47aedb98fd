#include "Logger.h"

#include <QLoggingCategory>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace {

std::atomic<LogSink*> gSink{nullptr};

Q_LOGGING_CATEGORY(lcOrbis, "orbis")
Q_LOGGING_CATEGORY(lcUtils, "orbis.utils")
Q_LOGGING_CATEGORY(lcGfx, "orbis.gfx")
Q_LOGGING_CATEGORY(lcGui, "orbis.gui")
Q_LOGGING_CATEGORY(lcGuiView, "orbis.gui.view")
Q_LOGGING_CATEGORY(lcGuiDevice, "orbis.gui.device")
Q_LOGGING_CATEGORY(lcGuiImage, "orbis.gui.image")
Q_LOGGING_CATEGORY(lcGuiStyle, "orbis.gui.style")
Q_LOGGING_CATEGORY(lcGuiLayout, "orbis.gui.layout")
Q_LOGGING_CATEGORY(lcGuiAnimation, "orbis.gui.animation")
Q_LOGGING_CATEGORY(lcGuiTouch, "orbis.gui.touch")
Q_LOGGING_CATEGORY(lcGuiControl, "orbis.gui.control")
Q_LOGGING_CATEGORY(lcGuiPhysics, "orbis.gui.physics")
Q_LOGGING_CATEGORY(lcGuiDevTools, "orbis.gui.devtools")
Q_LOGGING_CATEGORY(lcMaps, "orbis.maps")
Q_LOGGING_CATEGORY(lcMapsView, "orbis.maps.view")
Q_LOGGING_CATEGORY(lcMapsTiles, "orbis.maps.tiles")
Q_LOGGING_CATEGORY(lcApps, "orbis.apps")

struct CategoryRoute
{
    const char* prefix;
    const QLoggingCategory& (*category)();
};

// The first matching prefix wins, so the narrower ones come first.
const CategoryRoute kRoutes[] = {
    {"gui/DisplayView", lcGuiView},
    {"gui/DisplayDevice", lcGuiDevice},
    {"gui/DisplayImage", lcGuiImage},
    {"gui/Style", lcGuiStyle},
    {"gui/Skin", lcGuiStyle},
    {"gui/CssLayout", lcGuiLayout},
    {"gui/InterpolatedValue", lcGuiAnimation},
    {"gui/input/", lcGuiTouch},
    {"gui/control/", lcGuiControl},
    {"gui/physics/", lcGuiPhysics},
    {"gui/devtools/", lcGuiDevTools},
    {"gui/maps/", lcMapsView},
    {"gui/", lcGui},
    {"graphics/", lcGfx},
    {"maps/native/tiles/", lcMapsTiles},
    {"maps/", lcMaps},
    {"utils/", lcUtils},
    {"apps/", lcApps},
};

bool passes(const QLoggingCategory& category, LogRecord::Level level)
{
    switch (level) {
    case LogRecord::Info:
        return category.isDebugEnabled() && category.isInfoEnabled();
    case LogRecord::Warn:
        return category.isWarningEnabled();
    case LogRecord::Error:
        return category.isCriticalEnabled();
    }
    return true;
}

std::mutex& stderrMutex()
{
    static std::mutex mutex;
    return mutex;
}

bool abortOnAssert()
{
    static const bool enabled = qEnvironmentVariableIntValue("ORBIS_ASSERT_ABORT") != 0;
    return enabled;
}

void deliver(LogRecord& record, const char* source)
{
    const QLoggingCategory& category = Logger::category(source);
    if (!passes(category, record.level))
        return;
    record.category = category.categoryName();
    if (source)
        record.file = QString::fromUtf8(source);
    if (LogSink* sink = gSink.load()) {
        sink->write(record);
        return;
    }
    const QByteArray line = Logger::format(record).toLocal8Bit();
    std::lock_guard<std::mutex> lock(stderrMutex());
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

void Logger::log(LogRecord::Level level, const QString& message, const char* source)
{
    LogRecord record;
    record.level = level;
    record.message = message;
    deliver(record, source);
}

bool Logger::logAssert(const char* condition, const QString& message, const char* file, int line)
{
    LogRecord record;
    record.level = LogRecord::Error;
    record.message = message;
    record.isAssertion = true;
    record.condition = QString::fromUtf8(condition ? condition : "false");
    record.line = line;
    deliver(record, file);
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

const QLoggingCategory& Logger::category(const char* source)
{
    if (!source)
        return lcOrbis();
    while (std::strncmp(source, "../", 3) == 0)
        source += 3;
    for (const CategoryRoute& route : kRoutes)
        if (std::strncmp(source, route.prefix, std::strlen(route.prefix)) == 0)
            return route.category();
    return lcOrbis();
}

bool Logger::isEnabled(LogRecord::Level level, const char* source)
{
    return passes(category(source), level);
}
