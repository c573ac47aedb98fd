#include "SettingsRow.h"

#include <DataValue.h>
#include <control/Label.h>
#include <control/Slider.h>
#include <control/Switch.h>

SettingsRow::SettingsRow(DisplayView* parent, SettingsModel::Entry::Kind kind)
    : Panel(parent, "row"), mKind(kind)
{
    using Entry = SettingsModel::Entry;
    if (kind == Entry::Section) {
        setStyle(Style(QStringLiteral("Settings/SectionRow")));
        mTitle = new Label(this, "title", QString(), QStringLiteral("Settings/Section"));
        return;
    }
    setStyle(Style(QStringLiteral("Settings/Row")));
    mTitle = new Label(this, "title", QString(), QStringLiteral("Settings/RowTitle"));
    switch (kind) {
    case Entry::Toggle:
        mSwitch = new Switch(this, "switch");
        mSwitch->setStyle(Style(QStringLiteral("Settings/Switch")));
        break;
    case Entry::Level:
        mSlider = new Slider(this, "slider");
        mSlider->setStyle(Style(QStringLiteral("Settings/Slider")));
        mLevel = new Label(this, "level", QString(), QStringLiteral("Settings/Level"));
        connect(mSlider, qOverload<Slider*, double>(&Slider::valueChanged), this, &SettingsRow::levelChanged);
        break;
    case Entry::Choice:
    case Entry::Page:
        mDetail = new Label(this, "detail", QString(), QStringLiteral("Settings/RowDetail"));
        if (kind == Entry::Page)
            new Label(this, "chevron", QStringLiteral("\u203a"), QStringLiteral("Settings/Chevron"));
        break;
    default:
        break;
    }
    auto* divider = new Panel(this, "divider", QStringLiteral("Settings/Divider"));
    Q_UNUSED(divider);
}

void SettingsRow::bind(const SettingsModel::Entry& entry)
{
    mTitle->setText(entry.title);
    if (mDetail)
        mDetail->setText(entry.detail);
    if (!entry.value)
        return;
    double value;
    {
        DataValue::ConditionalLocker lock(entry.value);
        value = entry.value->toReal();
    }
    if (mSwitch) {
        mSwitch->clearValueSource();
        mSwitch->setOn(value != 0, false);
        mSwitch->setValueSource(*entry.value);
    }
    if (mSlider) {
        mSlider->clearValueSource();
        mSlider->setRange(entry.minimum, entry.maximum);
        mSlider->setStep(entry.step);
        mSlider->setValue(value);
        mSlider->setValueSource(*entry.value);
        levelChanged(mSlider, mSlider->value());
    }
}

void SettingsRow::levelChanged(Slider* slider, double value)
{
    // Levels of 0 to 1 read as percentages; others are percentages already.
    const double percent = slider->maximum() <= 1 ? value * 100 : value;
    mLevel->setText(QStringLiteral("%1 %").arg(qRound(percent)));
}

void SettingsRow::unbind()
{
    if (mSwitch)
        mSwitch->clearValueSource();
    if (mSlider)
        mSlider->clearValueSource();
}
