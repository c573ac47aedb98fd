#include "ConfigValue.h"

#include "ConfigRegistry.h"
#include "Logger.h"

static const char* const kLogSource = "../../../utils/ConfigValue";

ConfigValueBase::ConfigValueBase(const char* key) : mKey(QString::fromUtf8(key))
{
    ConfigRegistry::instance().registerValue(this);
}

ConfigValueBase::~ConfigValueBase()
{
    ConfigRegistry::instance().unregisterValue(this);
}

bool ConfigValueBase::needsRefresh() const
{
    return mGeneration.load(std::memory_order_acquire) != ConfigRegistry::instance().generation();
}

QString ConfigValueBase::fetchText() const
{
    ConfigRegistry& registry = ConfigRegistry::instance();
    // Take the generation first: a change that lands while we read is seen next time.
    mGeneration.store(registry.generation(), std::memory_order_release);
    return registry.text(mKey);
}

void ConfigValueBase::warnUnparsable(const QString& text, const char* kind) const
{
    ORBIS_WARN(QStringLiteral("Configuration value '%1' for %2 is not a valid %3; keeping the default")
                   .arg(text, mKey, QString::fromLatin1(kind)));
}

QString ConfigBoolValue::defaultText() const
{
    return defaultValue() ? QStringLiteral("true") : QStringLiteral("false");
}

QString ConfigBoolValue::currentText() const
{
    return value() ? QStringLiteral("true") : QStringLiteral("false");
}

bool ConfigBoolValue::parse(const QString& text, bool& out) const
{
    const QString t = text.trimmed().toLower();
    if (t == QLatin1String("true") || t == QLatin1String("1") || t == QLatin1String("yes") ||
        t == QLatin1String("on")) {
        out = true;
        return true;
    }
    if (t == QLatin1String("false") || t == QLatin1String("0") || t == QLatin1String("no") ||
        t == QLatin1String("off")) {
        out = false;
        return true;
    }
    return false;
}

QString ConfigIntValue::defaultText() const
{
    return QString::number(defaultValue());
}

QString ConfigIntValue::currentText() const
{
    return QString::number(value());
}

bool ConfigIntValue::parse(const QString& text, int& out) const
{
    bool ok = false;
    const int v = text.trimmed().toInt(&ok, 0);
    if (ok)
        out = v;
    return ok;
}

QString ConfigRealValue::defaultText() const
{
    return QString::number(defaultValue(), 'g', 17);
}

QString ConfigRealValue::currentText() const
{
    return QString::number(value(), 'g', 17);
}

bool ConfigRealValue::parse(const QString& text, double& out) const
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (ok)
        out = v;
    return ok;
}

QString ConfigStringValue::defaultText() const
{
    return defaultValue();
}

QString ConfigStringValue::currentText() const
{
    return value();
}

bool ConfigStringValue::parse(const QString& text, QString& out) const
{
    out = text;
    return true;
}
