#pragma once

#include "OrbisUtilsExport.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <atomic>
#include <mutex>

class ConfigValueBase;

/// Every configuration value object registers here. The registry holds the text
/// given for each key (from the INI file named by ORBIS_CONFIG, from files loaded
/// explicitly, or from key=value overrides, which win) and a generation counter
/// that tells the value objects when to parse their text again.
class ORBIS_UTILS_EXPORT ConfigRegistry
{
public:
    /// One registered key as entries() reports it: its default and current text,
    /// and whether any file or override gives it.
    struct Entry
    {
        QString key;
        QString defaultValue;
        QString currentValue;
        bool isSet = false;
    };

    static ConfigRegistry& instance();

    void registerValue(ConfigValueBase* value);
    void unregisterValue(ConfigValueBase* value);

    /// Loads an INI file; a missing or unreadable file logs a WARN and changes nothing.
    bool loadFile(const QString& path);
    /// Forgets every value read from files (before reading them again); overrides stay.
    void unloadFiles();
    /// Loads the file named by ORBIS_CONFIG, if the variable is set.
    void loadFromEnvironment();

    /// "key=value"; returns false (with a WARN) when the text has no '='.
    bool applyOverride(const QString& keyEqualsValue);
    void setOverride(const QString& key, const QString& value);
    void clearOverride(const QString& key);
    bool hasOverride(const QString& key) const;
    QString overrideText(const QString& key) const;

    /// The text given for a key (override first, then files); null when not given.
    QString text(const QString& key) const;

    /// Every registered key with its default and current value, sorted by key.
    QList<Entry> entries() const;

    quint64 generation() const { return mGeneration.load(std::memory_order_acquire); }

private:
    ConfigRegistry();
    void bump();

    mutable std::mutex mMutex;
    QMultiMap<QString, ConfigValueBase*> mValues;
    QHash<QString, QString> mFileValues;
    QHash<QString, QString> mOverrides;
    std::atomic<quint64> mGeneration{1};
};
