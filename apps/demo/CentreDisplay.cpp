#include "CentreDisplay.h"

#include "ClimateScreen.h"
#include "HomeScreen.h"
#include "MapScreen.h"
#include "NavigationBar.h"
#include "SettingsScreen.h"
#include "StatusBar.h"
#include "VehicleData.h"

#include <DataValues.h>
#include <DisplayDevice.h>

namespace {
// The fade-in ends this long after a switch.
constexpr qint64 kTransitionMs = qint64(CentreDisplay::kFadeInSeconds * 1000);
} // namespace

QStringList CentreDisplay::screenNames()
{
    return {QStringLiteral("home"), QStringLiteral("map"), QStringLiteral("climate"),
            QStringLiteral("settings")};
}

CentreDisplay::CentreDisplay(DisplayDevice* device, const QString& firstScreen) : mDevice(device)
{
    {
        // The night mode switch shows the skin the display has.
        DataValue::ConditionalLocker dayLock(GUI_dayMode);
        DataValue::EventLocker nightLock(VehicleData::nightMode);
        VehicleData::nightMode.setValue(!GUI_dayMode.value().isNull() && !GUI_dayMode.toBool());
    }
    mRoot = new DisplayView(device->views(), "centreDisplay");
    mRoot->setStyle(Style(QStringLiteral("Demo/Screen")));
    mRoot->resizeTo(device->width(), device->height());
    mStatusBar = new StatusBar(mRoot);
    auto* content = new DisplayView(mRoot, "content");
    content->setStyle(Style(QStringLiteral("Demo/Content")));
    auto* home = new HomeScreen(content);
    auto* map = new MapScreen(content);
    mScreens.insert(home->screenName(), home);
    mScreens.insert(map->screenName(), map);
    mScreens.insert(QStringLiteral("climate"), new ClimateScreen(content));
    mScreens.insert(QStringLiteral("settings"), new SettingsScreen(content));
    for (Screen* screen : qAsConst(mScreens)) {
        screen->hide();
        connect(screen, &Screen::pageChanged, this, &CentreDisplay::pageChanged);
    }
    mNavigation =
        new NavigationBar(mRoot, screenNames(), {tr("Home"), tr("Map"), tr("Climate"), tr("Settings")});
    connect(mNavigation, &NavigationBar::screenChosen, this,
            [this](const QString& name) { showScreen(name); });
    connect(home, &HomeScreen::mapRequested, this, [this] { showScreen(QStringLiteral("map")); });
    connect(&VehicleData::nightMode, &DataValue::valueChanged, this, &CentreDisplay::nightModeChanged);
    showScreen(mScreens.contains(firstScreen) ? firstScreen : QStringLiteral("home"), false);
}

CentreDisplay::~CentreDisplay()
{
    delete mRoot;
}

QString CentreDisplay::screenName() const
{
    const Screen* screen = currentScreen();
    return screen ? screen->screenName() : mCurrent;
}

qint64 CentreDisplay::settledForMs() const
{
    const qint64 since = mSettled.elapsed() - kTransitionMs;
    return since >= 0 ? since : -1;
}

void CentreDisplay::showScreen(const QString& name, bool animated)
{
    Screen* next = mScreens.value(name);
    if (!next || name == mCurrent)
        return;
    if (Screen* previous = currentScreen()) {
        previous->activate(false);
        previous->setAlpha(0, animated ? kFadeOutSeconds : 0, InterpolatedValue::EaseInOutCubic, true);
    }
    mCurrent = name;
    next->raise();
    next->setAlpha(1, animated ? kFadeInSeconds : 0, InterpolatedValue::EaseOutQuad, true, 0, false);
    next->activate(true);
    mNavigation->select(name, animated);
    mSettled.start();
}

void CentreDisplay::pageChanged()
{
    mSettled.start();
}

void CentreDisplay::nightModeChanged(DataValue* value)
{
    bool night;
    {
        DataValue::ConditionalLocker lock(value);
        night = value->toBool();
    }
    DataValue::EventLocker lock(GUI_dayMode);
    GUI_dayMode.setValue(!night);
}

void CentreDisplay::freeze()
{
    for (Screen* screen : qAsConst(mScreens))
        screen->freeze();
}
