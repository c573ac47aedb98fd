#include "DemoOptions.h"

#include <QProcess>
#include <gtest/gtest.h>

namespace {

TEST(DemoOptionsTest, DefaultsAndEveryFlag)
{
    DemoOptions defaults;
    ASSERT_TRUE(defaults.parse({}));
    EXPECT_EQ(defaults.size(), QSize(1280, 800));
    EXPECT_EQ(defaults.frames(), 0);
    EXPECT_EQ(defaults.scene(), QStringLiteral("home"));
    EXPECT_FALSE(defaults.night());
    EXPECT_FALSE(defaults.realTime());

    DemoOptions options;
    ASSERT_TRUE(options.parse({"--size",
                               "1920x720",
                               "--frames",
                               "12",
                               "--screenshot",
                               "/tmp/a.png",
                               "--set",
                               "ui/dirty_rects=false",
                               "--set",
                               "ui/gl_clear_random=true",
                               "--stats",
                               "s.txt",
                               "--scene",
                               "scroll",
                               "--script",
                               "tour.touch",
                               "--screenshot-every",
                               "30",
                               "--screens",
                               "shots",
                               "--night",
                               "--real-time"}));
    EXPECT_EQ(options.size(), QSize(1920, 720));
    EXPECT_EQ(options.frames(), 12);
    EXPECT_EQ(options.screenshotPath(), QStringLiteral("/tmp/a.png"));
    EXPECT_EQ(options.statsPath(), QStringLiteral("s.txt"));
    EXPECT_EQ(options.configOverrides(), QStringList({QStringLiteral("ui/dirty_rects=false"),
                                                      QStringLiteral("ui/gl_clear_random=true")}));
    EXPECT_EQ(options.scene(), QStringLiteral("scroll"));
    EXPECT_EQ(options.scriptPath(), QStringLiteral("tour.touch"));
    EXPECT_EQ(options.screenshotEvery(), 30);
    EXPECT_EQ(options.screensPath(), QStringLiteral("shots"));
    EXPECT_TRUE(options.night());
    EXPECT_TRUE(options.realTime());
}

TEST(DemoOptionsTest, TheScrollSceneHasItsOwnSizeUnlessOneIsGiven)
{
    DemoOptions scroll;
    ASSERT_TRUE(scroll.parse({"--scene", "scroll"}));
    EXPECT_EQ(scroll.size(), QSize(1280, 720));
    DemoOptions sized;
    ASSERT_TRUE(sized.parse({"--scene", "scroll", "--size", "1920x1080"}));
    EXPECT_EQ(sized.size(), QSize(1920, 1080));
    // The last scene named decides.
    DemoOptions back;
    ASSERT_TRUE(back.parse({"--scene", "scroll", "--scene", "map"}));
    EXPECT_EQ(back.size(), QSize(1280, 800));
}

TEST(DemoOptionsTest, WarmUpAndIdleRunsOfTheScrollScene)
{
    DemoOptions options;
    ASSERT_TRUE(options.parse({"--idle", "--warmup", "0", "--scene", "scroll", "--frames", "600"}));
    EXPECT_TRUE(options.idle());
    EXPECT_EQ(options.warmup(), 0);
    DemoOptions warm;
    ASSERT_TRUE(warm.parse({"--warmup", "60", "--frames", "600"}));
    EXPECT_EQ(warm.warmup(), 60);
    EXPECT_EQ(warm.frames(), 600);
    DemoOptions defaults;
    ASSERT_TRUE(defaults.parse({"--scene", "scroll"}));
    EXPECT_FALSE(defaults.idle());
    EXPECT_EQ(defaults.warmup(), 0);
}

TEST(DemoOptionsTest, BadArgumentsAreNamed)
{
    const QList<QPair<QStringList, QString>> cases = {
        {{"--size", "1280*800"}, "bad size: 1280*800 (expected WIDTHxHEIGHT)"},
        {{"--size", "0x800"}, "bad size: 0x800 (expected WIDTHxHEIGHT)"},
        {{"--frames", "0"}, "bad frame count: 0"},
        {{"--frames", "ten"}, "bad frame count: ten"},
        {{"--screenshot-every", "-1"}, "bad screenshot interval: -1"},
        {{"--scene", "garage"}, "unknown scene: garage (expected home, map, settings, climate, scroll)"},
        {{"--set", "=1"}, "bad override: =1 (expected key=value)"},
        {{"--frames"}, "--frames needs a value"},
        {{"--bogus"}, "unknown option: --bogus"},
        {{"--bogus", "1"}, "unknown option: --bogus"},
        {{"--frames", "5", "--fullscreen"}, "unknown option: --fullscreen"},
        {{"--frames", "5", "--warmup", "-1"}, "bad warm-up frame count: -1"},
        {{"--warmup", "60"}, "--warmup needs --frames"},
        {{"--idle", "--frames", "5"}, "--idle needs --scene scroll"},
        {{"--scene", "scroll", "--idle", "--scene", "home"}, "--idle needs --scene scroll"},
    };
    for (const auto& c : cases) {
        DemoOptions options;
        EXPECT_FALSE(options.parse(c.first)) << c.first.join(' ').toStdString();
        EXPECT_EQ(options.error(), c.second);
    }
}

// The program answers its command line before it looks for a display.
struct DemoProcess
{
    int status = -1;
    QString out;
    QString err;

    explicit DemoProcess(const QStringList& arguments)
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("DISPLAY"));
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(ORBIS_DEMO_BINARY), arguments);
        if (!process.waitForFinished(30000))
            return;
        status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        out = QString::fromLocal8Bit(process.readAllStandardOutput());
        err = QString::fromLocal8Bit(process.readAllStandardError());
    }
};

TEST(DemoProcessTest, HelpAndBadFlagsNeedNoDisplay)
{
    const DemoProcess help({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out, DemoOptions::usage());
    EXPECT_TRUE(help.err.isEmpty()) << help.err.toStdString();

    const DemoProcess unknown({"--bogus"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.err, "orbis-demo: unknown option: --bogus\n" + DemoOptions::usage());

    const DemoProcess value({"--frames", "many"});
    EXPECT_EQ(value.status, 2);
    EXPECT_EQ(value.err, "orbis-demo: bad frame count: many\n" + DemoOptions::usage());

    const DemoProcess key({"--set", "ui/no_such_key=1"});
    EXPECT_EQ(key.status, 2);
    EXPECT_EQ(key.err, "orbis-demo: unknown configuration key: ui/no_such_key\n" + DemoOptions::usage());

    const DemoProcess script({"--script", "/nonexistent/tour.touch"});
    EXPECT_EQ(script.status, 2);
    EXPECT_TRUE(
        script.err.startsWith("orbis-demo: /nonexistent/tour.touch: cannot read /nonexistent/tour.touch"))
        << script.err.toStdString();

    const DemoProcess display({"--frames", "1"});
    EXPECT_EQ(display.status, 1);
    EXPECT_TRUE(display.err.contains("needs an X display")) << display.err.toStdString();
}

} // namespace
