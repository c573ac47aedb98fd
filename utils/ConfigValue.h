#pragma once

#include "OrbisUtilsExport.h"

#include <QString>
#include <atomic>
#include <mutex>

/// Base of the global configuration value objects: a slash-separated key and a
/// default. The typed subclasses parse the registry's text for their key lazily
/// and cache the result until the registry changes.
class ORBIS_UTILS_EXPORT ConfigValueBase
{
public:
    explicit ConfigValueBase(const char* key);
    virtual ~ConfigValueBase();
    ConfigValueBase(const ConfigValueBase&) = delete;
    ConfigValueBase& operator=(const ConfigValueBase&) = delete;

    const QString& key() const { return mKey; }
    virtual QString defaultText() const = 0;
    virtual QString currentText() const = 0;

protected:
    /// Re-reads the registry when it changed since the last read. Returns the text
    /// to parse, or a null string when the key is not given (use the default).
    bool needsRefresh() const;
    QString fetchText() const;
    void warnUnparsable(const QString& text, const char* kind) const;

    QString mKey;
    mutable std::mutex mMutex;
    mutable std::atomic<quint64> mGeneration{0};
};

/// A configuration value of type T: the registry's text for the key, parsed on
/// first use after each registry change; the default when the key is absent or
/// its text does not parse (the latter with a logged warning).
template <typename T> class TConfigValue : public ConfigValueBase
{
public:
    TConfigValue(const char* key, T defaultValue)
        : ConfigValueBase(key), mDefault(defaultValue), mValue(defaultValue)
    {}

    T value() const
    {
        if (needsRefresh())
            refresh();
        std::lock_guard<std::mutex> lock(mMutex);
        return mValue;
    }
    operator T() const { return value(); }
    T defaultValue() const { return mDefault; }

protected:
    virtual bool parse(const QString& text, T& out) const = 0;
    virtual const char* kindName() const = 0;

private:
    void refresh() const
    {
        const QString text = fetchText();
        T parsed = mDefault;
        if (!text.isNull() && !parse(text, parsed)) {
            warnUnparsable(text, kindName());
            parsed = mDefault;
        }
        std::lock_guard<std::mutex> lock(mMutex);
        mValue = parsed;
    }

    T mDefault;
    mutable T mValue;
};

/// A boolean setting: "true", "1", "yes", "on" and "false", "0", "no", "off",
/// in any case.
class ORBIS_UTILS_EXPORT ConfigBoolValue : public TConfigValue<bool>
{
public:
    using TConfigValue::TConfigValue;
    QString defaultText() const override;
    QString currentText() const override;

protected:
    bool parse(const QString& text, bool& out) const override;
    const char* kindName() const override { return "bool"; }
};

/// An integer setting, decimal or with a 0x/0 prefix for hexadecimal/octal.
class ORBIS_UTILS_EXPORT ConfigIntValue : public TConfigValue<int>
{
public:
    using TConfigValue::TConfigValue;
    QString defaultText() const override;
    QString currentText() const override;

protected:
    bool parse(const QString& text, int& out) const override;
    const char* kindName() const override { return "int"; }
};

/// A floating-point setting.
class ORBIS_UTILS_EXPORT ConfigRealValue : public TConfigValue<double>
{
public:
    using TConfigValue::TConfigValue;
    QString defaultText() const override;
    QString currentText() const override;

protected:
    bool parse(const QString& text, double& out) const override;
    const char* kindName() const override { return "real"; }
};

/// A text setting, taken as given.
class ORBIS_UTILS_EXPORT ConfigStringValue : public TConfigValue<QString>
{
public:
    ConfigStringValue(const char* key, const QString& defaultValue = QString())
        : TConfigValue(key, defaultValue)
    {}
    QString defaultText() const override;
    QString currentText() const override;

protected:
    bool parse(const QString& text, QString& out) const override;
    const char* kindName() const override { return "string"; }
};
