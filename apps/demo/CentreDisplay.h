#pragma once

#include "DemoContent.h"

#include <ElapsedTimer.h>
#include <QHash>
#include <QObject>
#include <QStringList>

class DataValue;
class DisplayDevice;
class DisplayView;
class NavigationBar;
class Screen;
class StatusBar;

// The centre display: a status bar, the screens, and the navigation bar that
// switches between them with a cross-fade. Everything is laid out by the flex
// rules of the style files at whatever size the display has.
class CentreDisplay : public QObject, public DemoContent
{
    Q_OBJECT

public:
    CentreDisplay(DisplayDevice* device, const QString& firstScreen);
    ~CentreDisplay() override;

    static QStringList screenNames();

    QString screenName() const override;
    qint64 settledForMs() const override;

    void showScreen(const QString& name, bool animated = true);
    Screen* screen(const QString& name) const { return mScreens.value(name); }
    Screen* currentScreen() const { return mScreens.value(mCurrent); }
    StatusBar* statusBar() const { return mStatusBar; }
    NavigationBar* navigationBar() const { return mNavigation; }
    DisplayView* root() const { return mRoot; }
    // Stops what moves by itself (the maps, the ring), for measurements.
    void freeze();

    static constexpr double kFadeInSeconds = 0.3;
    static constexpr double kFadeOutSeconds = 0.2;

private slots:
    void pageChanged();
    void nightModeChanged(DataValue* value);

private:
    DisplayDevice* mDevice;
    DisplayView* mRoot;
    StatusBar* mStatusBar;
    NavigationBar* mNavigation;
    QHash<QString, Screen*> mScreens;
    QString mCurrent;
    ElapsedTimer mSettled;
};
