#include "SkinManager.h"

#include "DataValues.h"
#include "StyleManager.h"

namespace {
// An unset day mode is day: a screen that starts before the light sensor answers
// should not come up dark.
bool dayModeValue()
{
    DataValue::ConditionalLocker lock(GUI_dayMode);
    return GUI_dayMode.value().isNull() || GUI_dayMode.toBool();
}
} // namespace

SkinManager* SkinManager::instance()
{
    return Singleton<SkinManager>::instance();
}

SkinManager::SkinManager() : mSkin(dayModeValue() ? dayName() : nightName())
{
    StyleManager::registerOptionalStyleOverrideName(mSkin);
    connect(&GUI_dayMode, &DataValue::valueChanged, this, &SkinManager::dayModeChanged);
}

void SkinManager::dayModeChanged()
{
    setDayMode(dayModeValue());
}

void SkinManager::setDayMode(bool day)
{
    const QString skin = day ? dayName() : nightName();
    if (skin == mSkin)
        return;
    StyleManager::unregisterOptionalStyleOverrideName(mSkin);
    StyleManager::registerOptionalStyleOverrideName(skin);
    mSkin = skin;
    if (StyleManager* styles = StyleManager::instance())
        styles->loadConfiguration();
    emit skinChanged();
}
