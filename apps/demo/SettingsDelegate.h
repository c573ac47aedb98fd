#pragma once

#include <control/ListDelegate.h>

class SettingsModel;

// Makes and binds the settings rows: headers are lower than the rows under them.
class SettingsDelegate : public ListDelegate
{
public:
    explicit SettingsDelegate(const SettingsModel* model) : mModel(model) {}

    int rowKind(int row) const override;
    DisplayView* createRow(int kind, DisplayView* parent) override;
    void bindRow(DisplayView* view, int row) override;
    void unbindRow(DisplayView* view, int row) override;
    int rowHeight(int row) const override;

    static constexpr int kSectionHeight = 56;
    static constexpr int kRowHeight = 76;

private:
    const SettingsModel* mModel;
};
