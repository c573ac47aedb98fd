#include "input/touch/TouchScript.h"

#include "LogCapture.h"
#include "input/touch/ScriptTouchDriver.h"
#include "support/QtPrinters.h"
#include "support/TouchFixture.h"

#include <QTemporaryDir>

namespace {

using Step = TouchScript::Step;

TEST(TouchScriptTest, ParsesStepsCommentsAndBlankLines)
{
    TouchScript script;
    ASSERT_TRUE(script.parse("# a tap, then a two-finger pinch\n"
                             "0 0 down 100 200\r\n"
                             "\n"
                             "   16\t0  move 110 200   # drifting\n"
                             "32 0 up 110 200\n"
                             "500 1 down 0 0\n"
                             "500 2 down 32767 32767\n"
                             "516 2 up 32767 32767\n"
                             "516 1 up 0 0"))
        << script.error().toStdString();
    ASSERT_EQ(script.steps().size(), 7);
    EXPECT_EQ(script.steps()[0], (Step{0, 0, TouchScript::Down, QPoint(100, 200)}));
    EXPECT_EQ(script.steps()[1], (Step{16, 0, TouchScript::Move, QPoint(110, 200)}));
    EXPECT_EQ(script.steps()[2], (Step{32, 0, TouchScript::Up, QPoint(110, 200)}));
    EXPECT_EQ(script.steps()[4], (Step{500, 2, TouchScript::Down, QPoint(32767, 32767)}));
    EXPECT_EQ(script.durationMs(), 516);
    EXPECT_TRUE(script.error().isEmpty());

    EXPECT_TRUE(script.parse("# nothing but a comment\n\n"));
    EXPECT_TRUE(script.isEmpty());
    EXPECT_EQ(script.durationMs(), 0);
}

TEST(TouchScriptTest, ErrorsNameTheLineAndTheProblem)
{
    const QList<QPair<QByteArray, QString>> cases = {
        {"0 0 down 1", "line 1: expected 'time touch action x y', found 4 fields"},
        {"0 0 down 1 2 3", "line 1: expected 'time touch action x y', found 6 fields"},
        {"\n\nx", "line 3: expected 'time touch action x y', found 1 field"},
        {"-5 0 down 1 2", "line 1: bad time '-5' (expected 0 to 86400000 ms)"},
        {"86400001 0 down 1 2", "line 1: bad time '86400001' (expected 0 to 86400000 ms)"},
        {"99999999999999999999 0 down 1 2",
         "line 1: bad time '99999999999999999999' (expected 0 to 86400000 ms)"},
        {"0 10 down 1 2", "line 1: bad touch '10' (expected 0 to 9)"},
        {"0 a down 1 2", "line 1: bad touch 'a' (expected 0 to 9)"},
        {"0 0 press 1 2", "line 1: unknown action 'press' (expected down, move or up)"},
        {"0 0 DOWN 1 2", "line 1: unknown action 'DOWN' (expected down, move or up)"},
        {"0 0 down 32768 2", "line 1: bad x '32768' (expected 0 to 32767)"},
        {"0 0 down 1 1.5", "line 1: bad y '1.5' (expected 0 to 32767)"},
        {"10 0 down 1 2\n9 0 up 1 2", "line 2: time 9 is before the previous event's 10"},
        {"0 0 move 1 2", "line 1: touch 0 is not down"},
        {"0 3 down 1 2\n5 3 up 1 2\n6 3 up 1 2", "line 3: touch 3 is not down"},
        {"0 0 down 1 2\n# comment\n5 0 down 1 2", "line 3: touch 0 is already down (since line 1)"},
        {"0 0 down 1 2\n1 1 down 1 2\n2 0 up 1 2", "line 2: touch 1 goes down here and never up"},
    };
    for (const auto& c : cases) {
        TouchScript script;
        EXPECT_FALSE(script.parse(c.first)) << c.first.toStdString();
        EXPECT_EQ(script.error(), c.second) << c.first.toStdString();
        EXPECT_TRUE(script.isEmpty());
    }
    TouchScript script;
    EXPECT_FALSE(script.parse("0 0 down 1 2\n1 0 up 1 2\nbad"));
    EXPECT_EQ(script.errorLine(), 3);
    EXPECT_TRUE(script.isEmpty()) << "a failed parse keeps no steps";
}

TEST(TouchScriptTest, LoadsFilesAndNamesUnreadableOnes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tap.touch"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("0 0 down 5 6\n40 0 up 5 6\n");
    file.close();
    TouchScript script;
    ASSERT_TRUE(script.load(path));
    EXPECT_EQ(script.steps().size(), 2);

    const QString missing = dir.filePath(QStringLiteral("missing.touch"));
    EXPECT_FALSE(script.load(missing));
    EXPECT_TRUE(script.error().startsWith(QStringLiteral("cannot read %1: ").arg(missing)));
    EXPECT_EQ(script.errorLine(), 0);
}

// The driver releases steps as the clock reaches them, stamped with the script's
// own times, so a late frame still sees the original spacing.
TEST(ScriptTouchDriverTest, QueuesDueStepsStampedWithScriptTime)
{
    ManualClock clock(5000);
    TouchScript script;
    ASSERT_TRUE(script.parse("0 0 down 10 10\n20 0 move 30 10\n40 0 move 50 10\n60 0 up 50 10"));
    ScriptTouchDriver driver(script, 3);
    EXPECT_FALSE(driver.isStarted());
    driver.queueDueEvents();
    EXPECT_EQ(driver.startedAtMs(), 5000);
    QVector<TouchEvent> events = driver.getEvents();
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0].id, 3);
    EXPECT_EQ(events[0].state, TouchTouched);
    EXPECT_EQ(events[0].timeMs, 5000);

    clock.advanceMs(45); // two steps are due in one frame
    driver.queueDueEvents();
    events = driver.getEvents();
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(events[0].timeMs, 5020);
    EXPECT_EQ(events[1].timeMs, 5040);
    EXPECT_EQ(events[1].point, QPoint(50, 10));
    EXPECT_EQ(events[1].state, TouchMoved);
    EXPECT_FALSE(driver.isFinished());

    clock.advanceMs(15);
    driver.queueDueEvents();
    events = driver.getEvents();
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0].state, TouchReleased);
    EXPECT_TRUE(driver.isFinished());
    EXPECT_EQ(driver.playedSteps(), 4);
}

struct ScriptTouchDeviceTest : TouchFixture
{
};

TEST_F(ScriptTouchDeviceTest, AScriptTapsThroughTheDispatcher)
{
    TouchScript script;
    ASSERT_TRUE(script.parse("0 0 down 150 150\n48 0 up 150 150"));
    touch->setTouchDriver(std::make_unique<ScriptTouchDriver>(script));
    device.startFrame();
    EXPECT_EQ(take(), QStringList({"button:touched 0 150,150"}));
    clock.advanceMs(32);
    device.startFrame();
    EXPECT_TRUE(take().isEmpty());
    clock.advanceMs(32);
    device.startFrame();
    EXPECT_EQ(take(), QStringList({"button:tapped 0 150,150", "button:released 0"}));
}

TEST_F(ScriptTouchDeviceTest, ScriptDriverLoadsByName)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("s.touch"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("0 0 down 150 150\n0 0 up 150 150\n");
    file.close();
    ASSERT_TRUE(touch->loadTouchDriver(QStringLiteral("script:") + path));
    EXPECT_NE(dynamic_cast<ScriptTouchDriver*>(touch->touchDriver()), nullptr);

    LogCapture logs;
    EXPECT_FALSE(touch->loadTouchDriver(QStringLiteral("script:") + dir.filePath("none.touch")));
    ASSERT_EQ(logs.messages().size(), 1);
    EXPECT_TRUE(logs.messages()[0].startsWith(QStringLiteral("Touch script: cannot read ")));
    EXPECT_EQ(touch->touchDriver(), nullptr);
}

} // namespace
