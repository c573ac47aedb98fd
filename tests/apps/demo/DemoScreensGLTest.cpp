#include "CentreDisplay.h"
#include "ClimateScreen.h"
#include "HomeScreen.h"
#include "NavigationBar.h"
#include "ScrollScene.h"
#include "ScrollSceneList.h"
#include "SettingsScreen.h"
#include "StatusBar.h"
#include "VehicleData.h"
#include "VehicleSimulator.h"

#include "support/PaintComparison.h"
#include "support/ScreenTest.h"

#include <DataValueManager.h>
#include <DataValues.h>
#include <LogCapture.h>
#include <ManualClock.h>
#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <ScopedConfigOverride.h>
#include <StyleManager.h>
#include <control/Button.h>
#include <control/Label.h>
#include <control/ListView.h>
#include <control/ProgressRing.h>
#include <control/Slider.h>
#include <maps/MapView.h>
#include <native/tiles/TileLoader.h>
#include <thread>

namespace {

const QString kReferences = QStringLiteral(ORBIS_DEMO_REFERENCES);

void publish(DataValue& value, const QVariant& v)
{
    DataValue::EventLocker lock(value);
    value.setValue(v);
}

// The vehicle parked at the start of its drive, at a fixed moment, so that every
// run pictures the same screens.
void publishFixedVehicle()
{
    using namespace VehicleData;
    const VehicleSimulator::Route route = VehicleSimulator::drivenRoute();
    publish(speed, 48);
    publish(gear, QStringLiteral("D"));
    publish(batteryPercent, 72);
    publish(rangeKm, 331);
    publish(powerKw, 11.4);
    publish(outsideTemperature, 17.5);
    publish(timeOfDay, 8 * 3600 + 42 * 60);
    publish(connectivity, 3);
    publish(position, QVariantList{route[0].latitude(), route[0].longitude(), 0.0});
    publish(mediaTitle, VehicleSimulator::tracks()[0].title);
    publish(mediaArtist, VehicleSimulator::tracks()[0].artist);
    publish(mediaCover, VehicleSimulator::tracks()[0].cover);
    publish(mediaDuration, VehicleSimulator::tracks()[0].seconds);
    publish(mediaNextTitle, VehicleSimulator::tracks()[1].title);
    publish(mediaNextArtist, VehicleSimulator::tracks()[1].artist);
    publish(mediaNextCover, VehicleSimulator::tracks()[1].cover);
    publish(mediaPosition, 83);
    publish(mediaPlaying, true);
    publish(driverTemperature, 21.5);
    publish(passengerTemperature, 20);
    publish(fanLevel, 2);
    publish(nightMode, false);
}

// The whole centre display on a stepped clock.
class DemoScreensGLTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        publishFixedVehicle();
        DataValueManager::instance()->processPendingChanges();
        StyleManager::registerOptionalStyleOverrideName(QStringLiteral("demo"));
        StyleManager::instance()->initialize();
        open(1280, 800, QPoint(0, 0));
    }
    void TearDown() override
    {
        mDisplay.reset();
        ScreenTest::TearDown();
        StyleManager::unregisterOptionalStyleOverrideName(QStringLiteral("demo"));
    }

    void step(int frames = 1)
    {
        for (int i = 0; i < frames; ++i) {
            mClock.advanceMs(16);
            mDevice->doTick();
        }
    }
    // Runs frames until the screen's maps have every tile they need (bounded).
    void settle(const Screen* screen)
    {
        step(40);
        const QList<MapView*> maps = screen->findChildren<MapView*>();
        for (int round = 0; round < 400; ++round) {
            bool done = true;
            for (MapView* map : maps)
                done = done && map->tileLoader()->isIdle() && map->tileRenderer()->isComplete();
            if (done)
                break;
            QThread::msleep(5);
            QCoreApplication::processEvents();
            step();
        }
        step(2);
    }

    // Within tolerance of the stored picture: at most 0.5 % of the pixels differ by
    // more than 48 levels in a channel (glyph hinting and curve coverage may move).
    ::testing::AssertionResult matchesReference(const QImage& shot, const QString& name)
    {
        const QString path = QDir(kReferences).filePath(name + QStringLiteral(".png"));
        if (qEnvironmentVariableIsSet("ORBIS_UPDATE_REFERENCES")) {
            QDir().mkpath(kReferences);
            shot.save(path);
        }
        const QImage reference(path);
        if (reference.isNull())
            return ::testing::AssertionFailure() << "no reference picture " << path.toStdString();
        if (reference.size() != shot.size())
            return ::testing::AssertionFailure() << "size differs from " << path.toStdString();
        const PaintComparison::Difference d =
            PaintComparison::difference(shot.convertToFormat(QImage::Format_ARGB32),
                                        reference.convertToFormat(QImage::Format_ARGB32), 48);
        const int allowed = shot.width() * shot.height() / 200;
        if (d.pixels <= allowed)
            return ::testing::AssertionSuccess();
        shot.save(QDir::temp().filePath(name + QStringLiteral("-actual.png")));
        return ::testing::AssertionFailure()
               << name.toStdString() << ": " << d.pixels << " pixels differ (worst " << d.worst << " at "
               << d.worstAt.x() << "," << d.worstAt.y() << ")";
    }

    ManualClock mClock;
    // As the demo runs: the two maps need more than the default texture budget.
    ScopedConfigOverride mTextures{"gfx/texture_cache_size_mb", 192};
    std::unique_ptr<CentreDisplay> mDisplay;
};

TEST_F(DemoScreensGLTest, EveryScreenLooksAsItShould)
{
    LogCapture log;
    mDisplay = std::make_unique<CentreDisplay>(mDevice.get(), QStringLiteral("home"));
    for (const QString& name : CentreDisplay::screenNames()) {
        mDisplay->showScreen(name, false);
        settle(mDisplay->currentScreen());
        EXPECT_EQ(mDisplay->screenName(), name);
        EXPECT_TRUE(matchesReference(frame(), name));
    }
    auto* settings = static_cast<SettingsScreen*>(mDisplay->screen(QStringLiteral("settings")));
    settings->openPage(QStringLiteral("charging"));
    settle(settings);
    EXPECT_EQ(mDisplay->screenName(), QStringLiteral("settings/charging"));
    EXPECT_TRUE(matchesReference(frame(), QStringLiteral("settings-charging")));

    // The night mode switch's value turns the whole display to the night skin.
    mDisplay->showScreen(QStringLiteral("home"), false);
    publish(VehicleData::nightMode, true);
    settle(mDisplay->currentScreen());
    EXPECT_TRUE(matchesReference(frame(), QStringLiteral("home-night")));
    publish(VehicleData::nightMode, false);
    step();
    EXPECT_TRUE(log.assertions().isEmpty()) << log.assertions().join('\n').toStdString();
}

// Tapping a row that leads to a page opens it (the row's page name belongs to the
// entries the new page replaces), and the main page comes back.
TEST_F(DemoScreensGLTest, APageRowOpensItsPage)
{
    LogCapture log;
    mDisplay = std::make_unique<CentreDisplay>(mDevice.get(), QStringLiteral("settings"));
    auto* settings = static_cast<SettingsScreen*>(mDisplay->screen(QStringLiteral("settings")));
    auto* list = settings->findChild<ListView*>();
    ASSERT_NE(list, nullptr);
    for (int row = 0; row < list->rowCount() && mDisplay->screenName() == "settings"; ++row)
        emit list->rowTapped(list, row);
    EXPECT_TRUE(mDisplay->screenName().startsWith("settings/")) << mDisplay->screenName().toStdString();
    settings->openPage(QString());
    EXPECT_EQ(mDisplay->screenName(), QStringLiteral("settings"));
    EXPECT_TRUE(log.assertions().isEmpty()) << log.assertions().join('\n').toStdString();
}

TEST_F(DemoScreensGLTest, ABoundValueReachesItsLabelInTheSameTick)
{
    mDisplay = std::make_unique<CentreDisplay>(mDevice.get(), QStringLiteral("climate"));
    step();
    auto* climate = static_cast<ClimateScreen*>(mDisplay->screen(QStringLiteral("climate")));
    EXPECT_EQ(climate->driverTemperature()->text(), QStringLiteral("21.5\u00b0"));

    // Written on another thread, as the vehicle's services write.
    std::thread writer([] {
        publish(VehicleData::outsideTemperature, -2.2);
        publish(VehicleData::driverTemperature, 23);
    });
    writer.join();
    step();
    EXPECT_EQ(mDisplay->statusBar()->temperature()->text(), QStringLiteral("-2 \u00b0C"));
    EXPECT_EQ(climate->driverTemperature()->text(), QStringLiteral("23.0\u00b0"));
    EXPECT_EQ(climate->driverSlider()->value(), 23);

    publish(VehicleData::outsideTemperature, QVariant());
    step();
    EXPECT_EQ(mDisplay->statusBar()->temperature()->text(), QStringLiteral("--"));
}

TEST_F(DemoScreensGLTest, TheNavigationBarSwitchesScreensWithAFade)
{
    mDisplay = std::make_unique<CentreDisplay>(mDevice.get(), QStringLiteral("home"));
    step(30);
    EXPECT_TRUE(mDisplay->isSettled());
    mDisplay->showScreen(QStringLiteral("climate"));
    EXPECT_FALSE(mDisplay->isSettled());
    Screen* home = mDisplay->screen(QStringLiteral("home"));
    Screen* climate = mDisplay->screen(QStringLiteral("climate"));
    step(8);
    // Half way: the old screen going, the new one coming.
    EXPECT_GT(climate->alpha(), 0.2f);
    EXPECT_LT(climate->alpha(), 1.0f);
    step(20);
    EXPECT_TRUE(mDisplay->isSettled());
    EXPECT_FLOAT_EQ(climate->alpha(), 1.0f);
    EXPECT_FALSE(home->visibleFlag());
    EXPECT_EQ(mDisplay->navigationBar()->selected(), QStringLiteral("climate"));
}

TEST_F(DemoScreensGLTest, TheScrollSceneScrollsAtItsSpeed)
{
    LogCapture log;
    mDevice.reset();
    open(1280, 720, QPoint(0, 0));
    ScrollScene scene(mDevice.get());
    step(2);
    const int start = scene.list()->contentOffset().y();
    step(50); // 800 ms
    EXPECT_NEAR(scene.list()->contentOffset().y() - start, 160, 4);
    EXPECT_EQ(scene.list()->rowHeight(7), 64);
    EXPECT_EQ(scene.list()->size(), QSize(800, 640));
    EXPECT_EQ(scene.list()->parentView()->y(), 80);
    EXPECT_TRUE(matchesReference(frame(), QStringLiteral("scroll")));
    EXPECT_TRUE(log.assertions().isEmpty()) << log.assertions().join('\n').toStdString();
}

TEST_F(DemoScreensGLTest, TheScrollSceneDrawsTheSamePixelsWithoutTheOptimizer)
{
    // Scrolled and turned frames; the second time round every display list is drawn
    // as it was built.
    mDevice.reset();
    open(1280, 720, QPoint(0, 0));
    const auto run = [this] {
        ScrollScene scene(mDevice.get());
        QVector<QImage> frames;
        for (int i = 0; i < 4; ++i) {
            step(7);
            frames.append(frame());
        }
        return frames;
    };
    const QVector<QImage> optimized = run();
    ScopedConfigOverride plain("gfx/optimize_display_lists", false);
    const QVector<QImage> unoptimized = run();
    ASSERT_EQ(optimized.size(), unoptimized.size());
    for (int i = 0; i < optimized.size(); ++i) {
        const PaintComparison::Difference d = PaintComparison::difference(optimized[i], unoptimized[i], 0);
        EXPECT_EQ(d.pixels, 0) << "frame " << i << ": worst " << d.worst << " at " << d.worstAt.x() << ","
                               << d.worstAt.y();
    }
    // The frames differ from each other: the scene moved.
    EXPECT_NE(optimized.first(), optimized.last());
}

// The tour plays through every screen without a single assertion.
TEST(DemoTourGLTest, TheTourVisitsEveryScreenWithoutAssertions)
{
    QTemporaryDir out;
    QProcess demo;
    demo.setProcessChannelMode(QProcess::MergedChannels);
    // Under the address sanitizer the demo's exit would end in a leak report from the
    // GL driver, which is unloaded by then and cannot be named by a suppression. The
    // demo's own code is leak-checked in this process by the screen tests.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       environment.value(QStringLiteral("ASAN_OPTIONS")) + QStringLiteral(":detect_leaks=0"));
    demo.setProcessEnvironment(environment);
    demo.start(QStringLiteral(ORBIS_DEMO_BINARY),
               {QStringLiteral("--script"), QStringLiteral(ORBIS_DEMO_TOUR), QStringLiteral("--screens"),
                out.path()});
    ASSERT_TRUE(demo.waitForFinished(600000));
    const QString output = QString::fromLocal8Bit(demo.readAll());
    EXPECT_EQ(demo.exitCode(), 0) << output.toStdString();
    EXPECT_FALSE(output.contains(QStringLiteral("assertion"))) << output.toStdString();
    for (const char* screen : {"home", "map", "climate", "settings", "settings-units", "home-night"})
        EXPECT_TRUE(QFile::exists(QDir(out.path()).filePath(QLatin1String(screen) + QStringLiteral(".png"))))
            << screen;
}

} // namespace
