#pragma once

#include "Screen.h"

#include <memory>

class Button;
class Label;
class ListView;
class SettingsDelegate;
class SettingsModel;

// The settings: a scrolling list of grouped rows with switches and sliders bound
// to the vehicle's values, and rows that open pages of their own.
class SettingsScreen : public Screen
{
    Q_OBJECT

public:
    explicit SettingsScreen(DisplayView* parent);
    ~SettingsScreen() override;

    QString screenName() const override;
    ListView* list() const { return mList; }
    SettingsModel* model() const { return mModel; }
    // "" for the first page.
    void openPage(QString page);

private slots:
    void rowTapped(ListView* list, int row);
    void backClicked();

private:
    SettingsModel* mModel;
    std::unique_ptr<SettingsDelegate> mDelegate;
    Button* mBack;
    Label* mTitle;
    ListView* mList;
};
