#include "LogCapture.h"
#include "Logger.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

// Filter rules set through the API for one test; the environment's stay in force.
class ScopedLoggingRules
{
public:
    explicit ScopedLoggingRules(const char* rules)
    {
        QLoggingCategory::setFilterRules(QString::fromLatin1(rules));
    }
    ~ScopedLoggingRules() { QLoggingCategory::setFilterRules(QString()); }
};

QString categoryOf(const char* source)
{
    return QString::fromLatin1(Logger::category(source).categoryName());
}

} // namespace

TEST(LogCategory, NarrowerFoldersWinOverTheirParents)
{
    EXPECT_EQ(categoryOf("../../../gui/DisplayView"), "orbis.gui.view");
    EXPECT_EQ(categoryOf("../../../gui/input/touch/TouchDevice"), "orbis.gui.touch");
    EXPECT_EQ(categoryOf("gui/Style"), "orbis.gui.style");
    EXPECT_EQ(categoryOf("gui/maps/MapView"), "orbis.maps.view");
    EXPECT_EQ(categoryOf("gui/FontManager"), "orbis.gui");
    EXPECT_EQ(categoryOf("graphics/TextureCache"), "orbis.gfx");
    EXPECT_EQ(categoryOf("maps/native/tiles/HttpTileSource"), "orbis.maps.tiles");
    EXPECT_EQ(categoryOf("maps/native/MapCRS"), "orbis.maps");
    EXPECT_EQ(categoryOf("../../../utils/Singleton"), "orbis.utils");
    EXPECT_EQ(categoryOf("tests/Anything"), "orbis");
    EXPECT_EQ(categoryOf(nullptr), "orbis");
}

TEST(LogCategory, RecordsCarryTheirCategoryAndSourceWithUnchangedText)
{
    LogCapture capture;
    Logger::log(LogRecord::Warn, QStringLiteral("Tile cache x: y"), "maps/native/tiles/TileCacheDatabase");
    Logger::warn(QStringLiteral("from the application"));
    ASSERT_EQ(capture.records().size(), 2);
    const LogRecord tiles = capture.records().at(0);
    EXPECT_STREQ(tiles.category, "orbis.maps.tiles");
    EXPECT_EQ(tiles.file, QStringLiteral("maps/native/tiles/TileCacheDatabase"));
    EXPECT_EQ(Logger::format(tiles), QStringLiteral("WARN Tile cache x: y"));
    EXPECT_STREQ(capture.records().at(1).category, "orbis");
}

TEST(LogCategory, DebugRuleSilencesInfoOfThatCategoryOnly)
{
    ScopedLoggingRules rules("orbis.gfx.debug=false");
    LogCapture capture;
    Logger::log(LogRecord::Info, QStringLiteral("gfx info"), "graphics/Renderer");
    Logger::log(LogRecord::Warn, QStringLiteral("gfx warning"), "graphics/Renderer");
    Logger::log(LogRecord::Info, QStringLiteral("view info"), "../../../gui/DisplayView");
    EXPECT_EQ(capture.messages(), QStringList({"gfx warning", "view info"}));
    EXPECT_FALSE(Logger::isEnabled(LogRecord::Info, "graphics/Renderer"));
    EXPECT_TRUE(Logger::isEnabled(LogRecord::Error, "graphics/Renderer"));
}

TEST(LogCategory, InfoWarningAndCriticalRulesMatchTheLevels)
{
    LogCapture capture;
    {
        ScopedLoggingRules rules("orbis.gui.*.info=false\norbis.maps*.warning=false");
        Logger::log(LogRecord::Info, QStringLiteral("a"), "gui/Style");
        Logger::log(LogRecord::Warn, QStringLiteral("b"), "gui/Style");
        Logger::log(LogRecord::Warn, QStringLiteral("c"), "maps/native/tiles/HttpTileSource");
        Logger::log(LogRecord::Error, QStringLiteral("d"), "maps/native/MapCRS");
    }
    EXPECT_EQ(capture.messages(), QStringList({"b", "d"}));
    capture.clear();
    {
        // Silenced assertions still report that their condition failed.
        ScopedLoggingRules rules("orbis.gui.view.critical=false");
        EXPECT_FALSE(Logger::logAssert("x", QStringLiteral("hidden"), "../../../gui/DisplayView", 1));
        EXPECT_FALSE(Logger::logAssert("x", QStringLiteral("shown"), "../../../gui/DisplayDevice", 2));
    }
    EXPECT_EQ(capture.assertions(), QStringList({"shown"}));
    Logger::log(LogRecord::Info, QStringLiteral("rules gone"), "gui/Style");
    EXPECT_EQ(capture.messages().last(), QStringLiteral("rules gone"));
}

// QT_LOGGING_RULES is read once per process, so a child run of this program logs
// to its standard error under the rule.
TEST(LogCategory, LoggingRulesFromTheEnvironment)
{
    if (qEnvironmentVariableIsSet("ORBIS_LOG_CATEGORY_CHILD")) {
        Logger::log(LogRecord::Info, QStringLiteral("gfx info"), "graphics/Renderer");
        Logger::log(LogRecord::Error, QStringLiteral("gfx error"), "graphics/Renderer");
        Logger::log(LogRecord::Info, QStringLiteral("maps info"), "maps/native/MapCRS");
        return;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("orbis.gfx.debug=false"));
    environment.insert(QStringLiteral("ORBIS_LOG_CATEGORY_CHILD"), QStringLiteral("1"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=LogCategory.LoggingRulesFromTheEnvironment")});
    ASSERT_TRUE(child.waitForFinished(60000));
    EXPECT_EQ(child.exitCode(), 0);
    const QStringList lines = QString::fromLocal8Bit(child.readAllStandardError()).split('\n');
    EXPECT_FALSE(lines.contains(QStringLiteral("INFO gfx info")));
    EXPECT_TRUE(lines.contains(QStringLiteral("ERROR gfx error")));
    EXPECT_TRUE(lines.contains(QStringLiteral("INFO maps info")));
}
