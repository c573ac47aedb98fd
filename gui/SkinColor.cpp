#include "SkinColor.h"

#include "DataValues.h"

QColor SkinColor::color() const
{
    DataValue::ConditionalLocker lock(GUI_dayMode);
    return GUI_dayMode.value().isNull() || GUI_dayMode.toBool() ? mDay : mNight;
}
