#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QColor>

/// A colour with a day and a night variant; which one shows follows GUI_dayMode.
class ORBIS_UI_EXPORT SkinColor
{
public:
    SkinColor() = default;
    SkinColor(const QColor& both) : mDay(both), mNight(both) {}
    SkinColor(const QColor& day, const QColor& night) : mDay(day), mNight(night) {}

    QColor color() const;
    bool isValid() const { return mDay.isValid() || mNight.isValid(); }
    bool operator==(const SkinColor& other) const { return mDay == other.mDay && mNight == other.mNight; }

private:
    QColor mDay;
    QColor mNight;
};
