#pragma once

#include "SettingsModel.h"

#include <control/Panel.h>

class Label;
class Slider;
class Switch;

// The view of one settings row, of one kind; the list binds it to the rows of that
// kind as they scroll into view.
class SettingsRow : public Panel
{
    Q_OBJECT

public:
    SettingsRow(DisplayView* parent, SettingsModel::Entry::Kind kind);

    void bind(const SettingsModel::Entry& entry);
    void unbind();
    Switch* toggle() const { return mSwitch; }
    Slider* slider() const { return mSlider; }

private slots:
    void levelChanged(Slider* slider, double value);

private:
    SettingsModel::Entry::Kind mKind;
    Label* mTitle = nullptr;
    Label* mDetail = nullptr;
    Switch* mSwitch = nullptr;
    Slider* mSlider = nullptr;
    Label* mLevel = nullptr;
};
