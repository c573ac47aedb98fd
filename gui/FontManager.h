#pragma once

#include "OrbisUIFrameworkExport.h"
#include "Singleton.h"

#include <QFont>
#include <QHash>
#include <QStringList>

/// Owns the font families behind the font names that styles use ("normal", "bold",
/// "mono", ...), so that a product can change its typeface in one place.
class ORBIS_UI_EXPORT FontManager
{
public:
    static FontManager* instance();

    /// Exact, case-sensitive match of the name.
    bool findFont(const QString& name, QFont& out) const;
    bool hasFont(const QString& name) const { return mFonts.contains(name); }
    QStringList fontNames() const;

private:
    friend class Singleton<FontManager>;
    FontManager();

    QHash<QString, QFont> mFonts;
};
