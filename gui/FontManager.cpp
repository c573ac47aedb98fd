#include "FontManager.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace {

const char* const kSansFamily = "DejaVu Sans";
const char* const kMonoFamily = "DejaVu Sans Mono";
// Between Light and Normal: the "book" cut of a family.
constexpr int kBookWeight = 45;

// The preferred family when it is installed, else the platform's own font of the
// same kind. Without a GUI application there is no font database to ask.
QString installedFamily(const QString& preferred, QFontDatabase::SystemFont fallback)
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return preferred;
    const QFontDatabase database;
    if (database.families().contains(preferred))
        return preferred;
    return QFontDatabase::systemFont(fallback).family();
}

QFont makeFont(const QString& family, int weight, bool fixedPitch)
{
    QFont font(family);
    font.setWeight(weight);
    font.setFixedPitch(fixedPitch);
    font.setStyleHint(fixedPitch ? QFont::Monospace : QFont::SansSerif);
    return font;
}

} // namespace

FontManager* FontManager::instance()
{
    return Singleton<FontManager>::instance();
}

FontManager::FontManager()
{
    const QString sans = installedFamily(QString::fromLatin1(kSansFamily), QFontDatabase::GeneralFont);
    const QString mono = installedFamily(QString::fromLatin1(kMonoFamily), QFontDatabase::FixedFont);
    const struct
    {
        const char* name;
        int weight;
    } weights[] = {{"normal", QFont::Normal},
                   {"medium", QFont::Medium},
                   {"light", QFont::Light},
                   {"book", kBookWeight},
                   {"bold", QFont::Bold}};
    for (const auto& w : weights) {
        const QString name = QString::fromLatin1(w.name);
        mFonts.insert(name, makeFont(sans, w.weight, false));
        const QString monoName = name == QLatin1String("normal") ? QStringLiteral("mono") : name + "Mono";
        mFonts.insert(monoName, makeFont(mono, w.weight, true));
    }
}

bool FontManager::findFont(const QString& name, QFont& out) const
{
    const auto it = mFonts.constFind(name);
    if (it == mFonts.cend())
        return false;
    out = it.value();
    return true;
}

QStringList FontManager::fontNames() const
{
    QStringList names = mFonts.keys();
    names.sort();
    return names;
}
