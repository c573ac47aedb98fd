#include "SkinManager.h"

#include "DataValueManager.h"
#include "DataValues.h"
#include "DisplayDevice.h"
#include "LogCapture.h"
#include "Skin.h"
#include "StyleManager.h"
#include "support/QtPrinters.h"
#include "support/ScopedStyleAssets.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

void setDayMode(bool day)
{
    {
        DataValue::EventLocker lock(GUI_dayMode);
        GUI_dayMode.setValue(day);
    }
    DataValueManager::instance()->processPendingChanges();
}

// Each skin file redefines the palette and one named style; the base file builds on both.
// (Skin files name the same entries: a name stays defined once a file has defined it.)
class SkinManagerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setDayMode(true);
        for (const char* name : {"styles-common.conf", "assets-common.conf", "assets.conf"})
            assets.write(name, "");
        assets.write("styles-day.conf",
                     "[Skin]\npanelColor=\"Color:#e8eaee\"\n[Card]\nTitle=\"FontSize:20\"\n");
        assets.write("styles-night.conf", "[Skin]\npanelColor=\"Color:#101418\"\n"
                                          "[Card]\nTitle=\"FontSize:22\"\n");
        assets.write("styles.conf", "[Card]\nFrame=\"BackgroundColor:panelColor; Card/Title\"\n");
        StyleManager::instance()->initialize();
    }
    void TearDown() override { setDayMode(true); }

    ScopedStyleAssets assets;
    LogCapture log;
};

TEST_F(SkinManagerTest, DayModeSelectsTheSkinFileAndRestyles)
{
    SkinManager* skins = SkinManager::instance();
    EXPECT_EQ(skins->currentSkin(), QStringLiteral("day"));
    EXPECT_EQ(Skin::parseColor("panelColor").color(), QColor("#e8eaee"));
    EXPECT_EQ(Style("Card/Frame").fontSize(), 20);
    EXPECT_TRUE(StyleManager::configurationFiles().contains(assets.path("styles-day.conf")));
    EXPECT_FALSE(StyleManager::configurationFiles().contains(assets.path("styles-night.conf")));

    QSignalSpy changed(skins, SIGNAL(skinChanged()));
    setDayMode(false);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(skins->currentSkin(), QStringLiteral("night"));
    EXPECT_FALSE(StyleManager::configurationFiles().contains(assets.path("styles-day.conf")));
    EXPECT_EQ(Skin::parseColor("panelColor").color(), QColor("#101418"));
    EXPECT_EQ(Style("Card/Frame").fontSize(), 22);
    EXPECT_TRUE(Skin::hasColor("panelColor"));

    // The same mode again changes nothing.
    setDayMode(false);
    EXPECT_EQ(changed.count(), 1);
    setDayMode(true);
    EXPECT_EQ(changed.count(), 2);
    EXPECT_EQ(Skin::parseColor("panelColor").color(), QColor("#e8eaee"));
    EXPECT_TRUE(log.assertions().isEmpty()) << log.assertions().join('\n').toStdString();
}

TEST_F(SkinManagerTest, SkinColoursWinOverBuiltInOnesAndUnknownNamesFallBack)
{
    // "foregroundColor" is built in; the skin file does not name it.
    EXPECT_EQ(Skin::parseColor("foregroundColor").color(), QColor(0x15181c));
    EXPECT_EQ(Skin::parseColor("#123456").color(), QColor("#123456"));
    EXPECT_FALSE(Skin::parseColor("noSkinHasThisColour").isValid());
    EXPECT_EQ(log.assertions(), QStringList({"Unknown colour 'noSkinHasThisColour'"}));
}

TEST_F(SkinManagerTest, ASkinChangeRestylesViewsAndRepaintsTheScreen)
{
    DisplayDevice device(320, 240);
    auto* card = new DisplayView(device.views(), "card");
    card->resizeTo(100, 100);
    card->setStyle(Style("Card/Frame"));
    QRegion render;
    device.takeDirtyRegions(&render, nullptr);
    setDayMode(false);
    EXPECT_EQ(device.renderRegion(), QRegion(0, 0, 320, 240));
    EXPECT_TRUE(device.frameNeeded());
    QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    card->drawViewAndChildren(painter);
    EXPECT_EQ(QColor(image.pixel(50, 50)), QColor("#101418"));
}

} // namespace
