#include "Skin.h"

#include "StyleData.h"
#include "StyleManager.h"

#include <Logger.h>
#include <QHash>
#include <QSet>

static const char* const kLogSource = "../../../gui/Skin";
static const QString kSkinGroup = QStringLiteral("Skin/");

namespace {
QHash<QString, SkinColor>& colors()
{
    // Day: light surfaces, dark text; night: dark surfaces, light text. Both keep
    // at least 4.5:1 contrast between text and the surface it sits on.
    static QHash<QString, SkinColor> table = {
        {QStringLiteral("backgroundColor"), {QColor(0xeef0f3), QColor(0x0b0d10)}},
        {QStringLiteral("panelColor"), {QColor(0xffffff), QColor(0x1a1d22)}},
        {QStringLiteral("foregroundColor"), {QColor(0x15181c), QColor(0xf2f4f7)}},
        {QStringLiteral("secondaryForegroundColor"), {QColor(0x555d68), QColor(0x9aa3ae)}},
        {QStringLiteral("disabledForegroundColor"), {QColor(0x9ba1a9), QColor(0x5a616b)}},
        {QStringLiteral("accentColor"), {QColor(0x1f6feb), QColor(0x3b8cff)}},
        {QStringLiteral("dividerColor"), {QColor(0xd5d9df), QColor(0x2a2e35)}},
        {QStringLiteral("dividerShadowColor"), {QColor(0xffffff), QColor(0x050607)}},
        {QStringLiteral("scrollBarColor"), {QColor(0x80868f), QColor(0x6b727c)}},
        {QStringLiteral("shadowColor"), {QColor(0, 0, 0, 64), QColor(0, 0, 0, 153)}},
        {QStringLiteral("onAccentColor"), {QColor(0xffffff), QColor(0xffffff)}},
        {QStringLiteral("buttonColor"), {QColor(0xe1e4e8), QColor(0x2b3038)}},
        {QStringLiteral("buttonPressedColor"), {QColor(0xc5cad1), QColor(0x414854)}},
        {QStringLiteral("buttonSelectedColor"), {QColor(0x1f6feb), QColor(0x2f7df6)}},
        {QStringLiteral("buttonBlueColor"), {QColor(0x1f6feb), QColor(0x2f7df6)}},
        {QStringLiteral("buttonBluePressedColor"), {QColor(0x1857bd), QColor(0x1f5fc4)}},
        {QStringLiteral("buttonGreenColor"), {QColor(0x18864b), QColor(0x1f9d5a)}},
        {QStringLiteral("buttonGreenPressedColor"), {QColor(0x116a3a), QColor(0x167a45)}},
        {QStringLiteral("buttonRedColor"), {QColor(0xcc2f2f), QColor(0xdf4044)}},
        {QStringLiteral("buttonRedPressedColor"), {QColor(0xa32424), QColor(0xb53236)}},
        {QStringLiteral("buttonOutlineColor"), {QColor(0xb9bfc7), QColor(0x4a515c)}},
        {QStringLiteral("switchTrackColor"), {QColor(0xc3c8cf), QColor(0x3a3f47)}},
        {QStringLiteral("switchTrackOnColor"), {QColor(0x18864b), QColor(0x1f9d5a)}},
        {QStringLiteral("knobColor"), {QColor(0xffffff), QColor(0xf2f4f7)}},
        {QStringLiteral("sliderTrackColor"), {QColor(0xcdd2d8), QColor(0x363b43)}},
        {QStringLiteral("sliderFillColor"), {QColor(0x1f6feb), QColor(0x3b8cff)}},
    };
    return table;
}
} // namespace

SkinColor Skin::parseColor(const QString& text)
{
    const QString name = text.trimmed();
    // A skin file's colour wins over the built-in set of the same name.
    if (Singleton<StyleManager>::exists()) {
        if (const Style::StyleData* data = StyleManager::instance()->lookupStyle(kSkinGroup + name)) {
            const QColor defined(data->values().value(Style::Color).toString());
            if (defined.isValid())
                return SkinColor(defined);
        }
    }
    const auto it = colors().constFind(name);
    if (it != colors().constEnd())
        return it.value();
    const QColor literal(name);
    if (literal.isValid())
        return SkinColor(literal);
    static QSet<QString> reported;
    if (!reported.contains(name)) {
        reported.insert(name);
        ORBIS_FAIL(QStringLiteral("Unknown colour '%1'").arg(name));
    }
    return SkinColor();
}

bool Skin::hasColor(const QString& name)
{
    if (Singleton<StyleManager>::exists() && StyleManager::instance()->lookupStyle(kSkinGroup + name))
        return true;
    return colors().contains(name);
}

void Skin::setColor(const QString& name, const SkinColor& color)
{
    colors().insert(name, color);
}
