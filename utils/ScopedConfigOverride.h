#pragma once

#include "OrbisUtilsExport.h"

#include <QString>
#include <QVariant>

/// Sets a configuration override for the lifetime of the object and restores the
/// previous state afterwards. Meant for tests.
class ORBIS_UTILS_EXPORT ScopedConfigOverride
{
public:
    ScopedConfigOverride(const QString& key, const QVariant& value);
    ~ScopedConfigOverride();
    ScopedConfigOverride(const ScopedConfigOverride&) = delete;
    ScopedConfigOverride& operator=(const ScopedConfigOverride&) = delete;

private:
    QString mKey;
    bool mHadOverride;
    QString mPrevious;
};
