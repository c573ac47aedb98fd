#include "ConfigRegistry.h"

#include "ConfigValue.h"
#include "Logger.h"

#include <QFileInfo>
#include <QSettings>

static const char* const kLogSource = "../../../utils/ConfigRegistry";

ConfigRegistry& ConfigRegistry::instance()
{
    static ConfigRegistry registry;
    return registry;
}

ConfigRegistry::ConfigRegistry()
{
    loadFromEnvironment();
}

void ConfigRegistry::bump()
{
    mGeneration.fetch_add(1, std::memory_order_acq_rel);
}

void ConfigRegistry::registerValue(ConfigValueBase* value)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mValues.insert(value->key(), value);
}

void ConfigRegistry::unregisterValue(ConfigValueBase* value)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mValues.remove(value->key(), value);
}

bool ConfigRegistry::loadFile(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        ORBIS_WARN(QStringLiteral("Configuration file %1 does not exist; using defaults").arg(path));
        return false;
    }
    if (!info.isReadable() || !info.isFile()) {
        ORBIS_WARN(QStringLiteral("Configuration file %1 is not readable; using defaults").arg(path));
        return false;
    }
    QSettings settings(path, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError) {
        ORBIS_WARN(QStringLiteral("Configuration file %1 could not be parsed; using defaults").arg(path));
        return false;
    }
    QHash<QString, QString> loaded;
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys) {
        // A line like "=1" gives an empty key, which no value has and which the
        // settings reader refuses with a warning of its own.
        if (key.isEmpty())
            continue;
        const QVariant v = settings.value(key);
        // QSettings turns "a,b" into a list; configuration values are plain text.
        loaded.insert(key, v.type() == QVariant::StringList ? v.toStringList().join(QLatin1Char(','))
                                                            : v.toString());
    }
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (auto it = loaded.cbegin(); it != loaded.cend(); ++it)
            mFileValues.insert(it.key(), it.value());
    }
    bump();
    return true;
}

void ConfigRegistry::unloadFiles()
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mFileValues.clear();
    }
    bump();
}

void ConfigRegistry::loadFromEnvironment()
{
    const QString path = qEnvironmentVariable("ORBIS_CONFIG");
    if (!path.isEmpty())
        loadFile(path);
}

bool ConfigRegistry::applyOverride(const QString& keyEqualsValue)
{
    const int eq = keyEqualsValue.indexOf(QLatin1Char('='));
    const QString key = eq > 0 ? keyEqualsValue.left(eq).trimmed() : QString();
    if (key.isEmpty()) {
        ORBIS_WARN(
            QStringLiteral("Configuration override '%1' is not key=value; ignored").arg(keyEqualsValue));
        return false;
    }
    setOverride(key, keyEqualsValue.mid(eq + 1).trimmed());
    return true;
}

void ConfigRegistry::setOverride(const QString& key, const QString& value)
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mOverrides.insert(key, value);
    }
    bump();
}

void ConfigRegistry::clearOverride(const QString& key)
{
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mOverrides.remove(key);
    }
    bump();
}

bool ConfigRegistry::hasOverride(const QString& key) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mOverrides.contains(key);
}

QString ConfigRegistry::overrideText(const QString& key) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mOverrides.value(key);
}

QString ConfigRegistry::text(const QString& key) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    auto it = mOverrides.constFind(key);
    if (it != mOverrides.cend())
        return it.value();
    auto f = mFileValues.constFind(key);
    if (f != mFileValues.cend())
        return f.value();
    return QString();
}

QList<ConfigRegistry::Entry> ConfigRegistry::entries() const
{
    QList<ConfigValueBase*> values;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        values = mValues.values();
    }
    QList<Entry> out;
    QString lastKey;
    // QMultiMap::values() is ordered by key; one entry per key.
    for (ConfigValueBase* v : values) {
        if (!out.isEmpty() && v->key() == lastKey)
            continue;
        lastKey = v->key();
        Entry e;
        e.key = v->key();
        e.defaultValue = v->defaultText();
        e.currentValue = v->currentText();
        e.isSet = !text(v->key()).isNull();
        out.append(e);
    }
    return out;
}
