#include "StyleManager.h"
#include "DataValues.h"
#include "LogCapture.h"
#include "PerfLogger.h"
#include "ScopedConfigOverride.h"
#include "Style.h"
#include "StyleData.h"
#include "support/RestyleRecorder.h"
#include "support/ScopedStyleAssets.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class StyleManagerTest : public ::testing::Test
{
protected:
    // Writes styles.conf and the other base files (empty), then loads.
    void load(const QByteArray& styles)
    {
        for (const char* name : {"styles-common.conf", "assets-common.conf", "assets.conf"}) {
            if (!QFile::exists(assets.path(name)))
                assets.write(name, "");
        }
        assets.write("styles.conf", styles);
        assets.manager()->loadConfiguration();
    }

    QStringList errors() const
    {
        QStringList out;
        for (const LogRecord& r : log.records()) {
            if (r.level != LogRecord::Info)
                out << r.message;
        }
        return out;
    }

    ScopedStyleAssets assets;
    LogCapture log;
};

} // namespace

TEST_F(StyleManagerTest, NamedStylesApplyInOrderAndBuildOnEachOther)
{
    // QSettings sorts keys, so "Alert" is read before the "Base" it builds on.
    load("Alert=\"Base; Color:red\"\nBase=\"FontSize:20; Color:grey; Width:300\"\n"
         "Huge=\"Alert; FontSize:40; Font:bold\"\n");
    EXPECT_EQ(Style("Huge").fontSize(), 40);
    EXPECT_EQ(Style("Huge").width(), 300);
    EXPECT_TRUE(Style("Huge").font().bold());
    EXPECT_EQ(Style("Huge; Color:blue").stringValue(Style::Color), "blue");
    EXPECT_EQ(Style("Color:blue; Huge").stringValue(Style::Color), "red");
    EXPECT_TRUE(errors().isEmpty()) << errors().join('\n').toStdString();
}

TEST_F(StyleManagerTest, PlaceholdersAreFilledWhenTheirEntryArrives)
{
    Style early("Later; Width:5");
    EXPECT_EQ(log.assertions(), QStringList{"Missing style 'Later'"});
    EXPECT_EQ(early.width(), 5);
    EXPECT_EQ(assets.manager()->lookupStyle("Later"), nullptr);

    log.clear();
    load("Later=\"Width:1; Height:7\"\n");
    EXPECT_NE(assets.manager()->lookupStyle("Later"), nullptr);
    EXPECT_EQ(early.height(), 7);
    EXPECT_EQ(early.width(), 5);
    EXPECT_TRUE(errors().isEmpty()) << errors().join('\n').toStdString();
}

TEST_F(StyleManagerTest, RedefiningANamedStyleInCodeRestylesItsUsers)
{
    load("Panel=\"BackgroundColor:black\"\n");
    Style user("Panel; Width:10");
    Style unrelated("Width:10");
    QStringList journal;
    RestyleRecorder userListener("user", &journal);
    RestyleRecorder otherListener("other", &journal);
    user.registerListener(&userListener);
    unrelated.registerListener(&otherListener);

    assets.manager()->lookupOrCreateAlias("Panel", "BackgroundColor:navy");
    EXPECT_EQ(user.stringValue(Style::BackgroundColor), "navy");
    EXPECT_EQ(journal, QStringList{"user"});

    // The same definition again changes nothing.
    assets.manager()->lookupOrCreateAlias("Panel", "BackgroundColor:navy");
    EXPECT_EQ(journal, QStringList{"user"});
}

TEST_F(StyleManagerTest, CyclesAreReportedOnceAndLoadingFinishes)
{
    load("A=\"B; Width:1\"\nB=\"A; Height:2\"\nLoop=\"Loop; Width:3\"\nFine=\"Width:4\"\n");
    EXPECT_EQ(log.assertions(), QStringList({"Cycle detected between A;Height:2 and A",
                                             "Cycle detected between Loop;Width:3 and Loop"}));
    EXPECT_EQ(Style("Fine").width(), 4);
    EXPECT_EQ(Style("A").width(), 1);
    EXPECT_EQ(Style("B").height(), 2);
}

TEST_F(StyleManagerTest, EveryStyleIsEvaluatedOnceAfterWhatItUses)
{
    load("Base=\"FontSize:20\"\nTitle=\"Base; Bold:1\"\n");
    QStringList journal;
    RestyleRecorder title("title", &journal);
    RestyleRecorder base("base", &journal);
    RestyleRecorder plain("plain", &journal);
    Style(assets.manager()->lookupStyle("Title")).registerListener(&title);
    Style(assets.manager()->lookupStyle("Base")).registerListener(&base);
    Style("Width:1").registerListener(&plain);
    Style("Width:1").registerListener(&plain);

    assets.manager()->loadConfiguration();
    EXPECT_EQ(title.calls(), 1);
    EXPECT_EQ(base.calls(), 1);
    EXPECT_EQ(plain.calls(), 1);
    EXPECT_LT(journal.indexOf("base"), journal.indexOf("title"));
    EXPECT_EQ(PerfLogger::instance().stats("loadConfiguration").count > 0, true);

    Style("Width:1").unregisterListener(&plain);
    {
        RestyleRecorder gone("gone", &journal);
        Style("Width:1").registerListener(&gone);
    }
    assets.manager()->loadConfiguration();
    EXPECT_EQ(plain.calls(), 1);
    EXPECT_EQ(journal.count("gone"), 0);
}

TEST_F(StyleManagerTest, FilesAreReadInOrderAndOverridesWinQuietly)
{
    StyleManager::registerOptionalStyleOverrideName("premium");
    StyleManager::registerOptionalStyleOverrideName("absent");
    assets.write("styles-premium.conf", "Button=\"Color:gold\"\n");
    assets.write("styles-common.conf", "Panel=\"Width:1\"\n[Dialog]\nTitle=\"Width:3\"\n");
    assets.write("assets.conf",
                 "Panel=\"Width:5\"\nCard=InnerPadding:4,8\nBlank=\" ; \"\nIcon=\"Image:a.png\"\n");
    assets.write("assets-common.conf", "Sub/Deeper/Name=\"Height:9\"\n");
    load("Button=\"Color:grey\"\nPanel=\"Width:2\"\n");

    EXPECT_EQ(StyleManager::configurationFiles(),
              QStringList({assets.path("styles-premium.conf"), assets.path("styles-common.conf"),
                           assets.path("styles.conf"), assets.path("assets-common.conf"),
                           assets.path("assets.conf")}));
    EXPECT_EQ(Style("Button").stringValue(Style::Color), "gold");
    EXPECT_EQ(Style("Panel").width(), 1);
    EXPECT_EQ(Style("Dialog/Title").width(), 3);
    EXPECT_EQ(Style("Sub/Deeper/Name").height(), 9);
    EXPECT_EQ(Style("Card").padding(Style::InnerPadding), Padding(4, 8));
    EXPECT_EQ(Style("Icon").stringValue(Style::Image), "a.png");
    EXPECT_EQ(log.assertions(),
              QStringList({"Duplicate entry Panel", "Empty entry Blank", "Duplicate entry Panel"}));
}

TEST_F(StyleManagerTest, DamagedFilesAreReportedAndTheOthersStillLoad)
{
    // Unchecked, the reader would reserve a list of two billion strings for the
    // first file and abort.
    assets.write("styles-common.conf", "A=@Variant(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\n");
    assets.write("assets-common.conf", "[Broken\nShade=\"Color:#111\"\n");
    QDir(assets.path("")).mkdir("assets.conf");
    // A nameless group ("/") would be entered forever; a nameless key has no value.
    assets.write("styles.conf", "Good=\"Width:8\"\n/=\"Width:1\"\n[Dialog]\n=\"Width:2\"\n");
    assets.manager()->loadConfiguration();
    EXPECT_EQ(Style("Good").width(), 8);
    EXPECT_EQ(Style("Broken/Shade").stringValue(Style::Color), "#111");
    const QString file = "Style file " + assets.path("%1");
    EXPECT_EQ(
        errors(),
        QStringList({file.arg("styles-common.conf") + " contains escapes or serialized values",
                     "Missing entry Dialog/", file.arg("assets-common.conf") + " is not a valid INI file",
                     file.arg("assets.conf") + " is not readable"}));

    assets.write("styles-common.conf", "B=\"\\x40Variant(\\0\\0\\0\\v\\x7f\\xff\\xff\\xff)\"\n");
    assets.remove("styles.conf");
    log.clear();
    assets.manager()->loadConfiguration();
    // The reader keeps an unchanged file parsed: its damage is not reported again.
    EXPECT_EQ(
        errors(),
        QStringList({file.arg("styles-common.conf") + " contains escapes or serialized values",
                     file.arg("styles.conf") + " is missing", file.arg("assets.conf") + " is not readable"}));
    EXPECT_EQ(Style("Good").width(), 8);
}

TEST_F(StyleManagerTest, RuntimeStylingNeedsADevelopmentCarOrTheSwitch)
{
    load("Title=\"Width:1\"\n");
    EXPECT_FALSE(StyleManager::allowRuntimeStyling());
    EXPECT_TRUE(assets.manager()->watchedFiles().isEmpty());

    GUI_isDevelopmentCar.setValue(true);
    assets.manager()->initialize();
    GUI_isDevelopmentCar.setValue(false);
    EXPECT_TRUE(StyleManager::allowRuntimeStyling());
    EXPECT_TRUE(assets.manager()->watchedFiles().contains(assets.path("styles.conf")));

    Singleton<StyleManager>::reset();
    assets.manager()->initialize();
    EXPECT_FALSE(StyleManager::allowRuntimeStyling());
    ScopedConfigOverride on("ui/runtime_styling", true);
    EXPECT_TRUE(StyleManager::allowRuntimeStyling());
}

TEST_F(StyleManagerTest, AnEditedFileRestylesEveryListener)
{
    ScopedConfigOverride on("ui/runtime_styling", true);
    load("Title=\"Color:white\"\nOther=\"Width:1\"\n");
    Style title("Title; Width:5");
    RestyleRecorder titleListener("title", nullptr);
    RestyleRecorder otherListener("other", nullptr);
    title.registerListener(&titleListener);
    Style("Other").registerListener(&otherListener);

    const QString path = assets.path("styles.conf");
    assets.write("styles.conf", "Title=\"Color:yellow; Bold:1\"\nOther=\"Width:1\"\n");
    assets.manager()->styleFileChanged(path);
    EXPECT_TRUE(log.contains("Style file " + path + " change detected"));
    EXPECT_EQ(title.stringValue(Style::Color), "yellow");
    EXPECT_TRUE(title.boolValue(Style::Bold));
    EXPECT_EQ(title.width(), 5);
    EXPECT_EQ(titleListener.calls() + otherListener.calls(), 2);
    EXPECT_TRUE(assets.manager()->watchedFiles().contains(path));
    EXPECT_TRUE(log.assertions().isEmpty()) << log.assertions().join('\n').toStdString();

    // Still absent after the wait: no longer watched, and the definitions stay.
    assets.remove("styles.conf");
    assets.manager()->styleFileChanged(path);
    EXPECT_FALSE(assets.manager()->watchedFiles().contains(path));
    EXPECT_TRUE(log.contains("Style file " + path + " is missing"));
    EXPECT_EQ(title.stringValue(Style::Color), "yellow");
}

TEST_F(StyleManagerTest, TheWatcherFollowsAFileThatAnEditorReplaces)
{
    ScopedConfigOverride on("ui/runtime_styling", true);
    load("Title=\"Color:white\"\n");
    Style title("Title");
    QStringList journal;
    RestyleRecorder listener("title", &journal);
    title.registerListener(&listener);

    for (const char* colour : {"Color:orange", "Color:magenta"}) {
        const int before = listener.calls();
        assets.write("styles.conf", "Title=\"" + QByteArray(colour) + "\"\n");
        EXPECT_TRUE(QTest::qWaitFor([&] { return listener.calls() > before; }, 5000)) << colour;
        EXPECT_EQ(title.stringValue(Style::Color), QString(colour).mid(6));
    }
}

TEST_F(StyleManagerTest, TheShippedStyleSheetLoadsCleanly)
{
    qputenv("ORBIS_ASSETS", ORBIS_SOURCE_DIR "/assets");
    assets.manager()->loadConfiguration();
    EXPECT_TRUE(log.messages().isEmpty()) << log.messages().join('\n').toStdString();

    const Style dialog("Dialog/Frame");
    EXPECT_EQ(dialog.width(), 960);
    EXPECT_EQ(dialog.stringValue(Style::BackgroundColor), "panelColor");
    EXPECT_EQ(Style("Button/Primary").enumValue(Style::ButtonColor), 1);
    EXPECT_EQ(Style("Button/Image").stringValue(Style::ButtonImage), "button.png");
    EXPECT_TRUE(Style("Panel/Header").font().bold());
    EXPECT_EQ(Style("StatusBar/Icon").width(), 32);
}
