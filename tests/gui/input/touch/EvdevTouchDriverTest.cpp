#include "input/touch/EvdevTouchDriver.h"
#include "DataValueManager.h"
#include "DataValues.h"
#include "LogCapture.h"
#include "input/touch/VirtualTouchDevice.h"
#include "support/QtPrinters.h"
#include "support/TouchFixture.h"

#include <QSignalSpy>
#include <fcntl.h>
#include <linux/uinput.h>
#include <unistd.h>

namespace {
QStringList describe(const QVector<TouchEvent>& events)
{
    static const char* const names[] = {"idle", "touched", "moved", "released"};
    QStringList out;
    for (const TouchEvent& e : events)
        out << QStringLiteral("%1 %2 %3,%4").arg(e.id).arg(names[e.state]).arg(e.point.x()).arg(e.point.y());
    return out;
}

struct Stream
{
    QVector<input_event> events;
    Stream& abs(int code, int value) { return add(EV_ABS, code, value); }
    Stream& syn(int code = SYN_REPORT) { return add(EV_SYN, code, 0); }
    Stream& add(int type, int code, int value)
    {
        input_event e{};
        e.type = quint16(type);
        e.code = quint16(code);
        e.value = value;
        events.append(e);
        return *this;
    }
    QByteArray bytes() const
    {
        return QByteArray(reinterpret_cast<const char*>(events.constData()),
                          int(events.size() * sizeof(input_event)));
    }
};

struct Pipe
{
    int fds[2] = {-1, -1};
    Pipe() { EXPECT_EQ(pipe2(fds, O_CLOEXEC), 0); }
    ~Pipe()
    {
        for (int fd : fds) {
            if (fd >= 0)
                close(fd);
        }
    }
    void write(const QByteArray& data)
    {
        ASSERT_EQ(::write(fds[1], data.constData(), data.size()), data.size());
    }
    QByteArray read(int size)
    {
        QByteArray data(size, 0);
        EXPECT_EQ(::read(fds[0], data.data(), size), size);
        return data;
    }
    int takeReadEnd() { return std::exchange(fds[0], -1); }
};

// A recorded two-finger session: a press, a second finger, movement, one finger lifted,
// and a slot taken over by a new contact within one frame.
Stream recordedSession()
{
    Stream s;
    s.abs(ABS_MT_SLOT, 0).abs(ABS_MT_TRACKING_ID, 100).abs(ABS_MT_POSITION_X, 10).abs(ABS_MT_POSITION_Y, 20);
    s.add(EV_KEY, BTN_TOUCH, 1).syn();
    s.abs(ABS_MT_SLOT, 1)
        .abs(ABS_MT_TRACKING_ID, 101)
        .abs(ABS_MT_POSITION_X, 30)
        .abs(ABS_MT_POSITION_Y, 40)
        .syn();
    s.abs(ABS_MT_SLOT, 0).abs(ABS_MT_POSITION_X, 15).abs(ABS_MT_SLOT, 1).abs(ABS_MT_POSITION_Y, 45).syn();
    s.abs(ABS_MT_SLOT, 0).abs(ABS_MT_TRACKING_ID, -1).syn();
    s.abs(ABS_MT_SLOT, 1).abs(ABS_MT_TRACKING_ID, 102).abs(ABS_MT_POSITION_X, 300).syn();
    s.abs(ABS_MT_SLOT, 12).abs(ABS_MT_TRACKING_ID, 103).syn(); // beyond the slot table
    return s;
}

const QStringList kSession = {"0 touched 10,20",  "1 touched 30,40",   "0 moved 15,20",   "1 moved 30,45",
                              "0 released 15,20", "1 released 300,45", "1 touched 300,45"};
} // namespace

TEST(EvdevTouchDriver, ReaderThreadTurnsSlotFramesIntoEvents)
{
    Pipe pipe;
    EvdevTouchDriver driver;
    driver.start(pipe.takeReadEnd(), true);
    const QByteArray bytes = recordedSession().bytes();
    // Split inside an event: the reader must keep the partial one.
    pipe.write(bytes.left(int(sizeof(input_event)) * 3 + 5));
    pipe.write(bytes.mid(int(sizeof(input_event)) * 3 + 5));
    ASSERT_TRUE(driver.waitForEvents(kSession.size(), 5000));
    EXPECT_EQ(describe(driver.getEvents()), kSession);
    EXPECT_FALSE(driver.hasEvents());
    driver.stop();
    EXPECT_FALSE(driver.isRunning());
}

TEST(EvdevTouchDriver, DroppedFrameIsDiscardedAndRangesScale)
{
    EvdevTouchDriver driver;
    driver.setRange(0, 4095, 0, 4095);
    driver.setSize(QSize(800, 480));
    Stream s;
    s.abs(ABS_MT_SLOT, 0)
        .abs(ABS_MT_TRACKING_ID, 1)
        .abs(ABS_MT_POSITION_X, 2048)
        .abs(ABS_MT_POSITION_Y, 1024);
    s.syn(SYN_DROPPED).abs(ABS_MT_POSITION_X, 9).syn(); // lost frame: nothing reported
    s.abs(ABS_MT_POSITION_X, 4095).abs(ABS_MT_POSITION_Y, 4095).syn();
    const QByteArray bytes = s.bytes();
    driver.feed(bytes.constData(), bytes.size());
    EXPECT_EQ(describe(driver.getEvents()), QStringList({"0 touched 799,479"}));
}

TEST(VirtualTouchDevice, WritesDescriptionThenReplayableFrames)
{
    Pipe pipe;
    VirtualTouchDevice device(pipe.fds[1], QSize(800, 480));
    ASSERT_TRUE(device.create());
    uinput_user_dev description;
    const QByteArray head = pipe.read(sizeof(description));
    memcpy(&description, head.constData(), sizeof(description));
    EXPECT_STREQ(description.name, VirtualTouchDevice::kName);
    EXPECT_EQ(description.id.bustype, BUS_VIRTUAL);
    EXPECT_EQ(description.absmax[ABS_MT_POSITION_X], 799);
    EXPECT_EQ(description.absmax[ABS_MT_POSITION_Y], 479);
    EXPECT_EQ(description.absmax[ABS_MT_SLOT], VirtualTouchDevice::kMaxSlots - 1);

    EXPECT_TRUE(device.sendTouched(0, QPoint(10, 20)));
    EXPECT_TRUE(device.sendTouched(3, QPoint(30, 40)));
    EXPECT_TRUE(device.sendDragged(0, QPoint(11, 21)));
    EXPECT_TRUE(device.sendReleased(0, QPoint(12, 22)));
    EXPECT_TRUE(device.sendReleased(3, QPoint(30, 40)));
    LogCapture capture;
    EXPECT_FALSE(device.sendTouched(VirtualTouchDevice::kMaxSlots, QPoint()));
    EXPECT_EQ(capture.assertions(), QStringList({"invalid touch 10"}));

    // Touch down once for the first finger, up once after the last.
    const int frameEvents = 6 + 5 + 4 + 5 + 6;
    const QByteArray frames = pipe.read(frameEvents * int(sizeof(input_event)));
    QVector<input_event> events(frameEvents);
    memcpy(events.data(), frames.constData(), size_t(frames.size()));
    int buttons = 0;
    for (const input_event& e : events)
        buttons += e.type == EV_KEY && e.code == BTN_TOUCH ? (e.value ? 1 : 100) : 0;
    EXPECT_EQ(buttons, 101);

    EvdevTouchDriver driver;
    driver.feed(frames.constData(), frames.size());
    EXPECT_EQ(describe(driver.getEvents()),
              QStringList({"0 touched 10,20", "3 touched 30,40", "0 moved 11,21", "0 released 12,22",
                           "3 released 30,40"}));
}

TEST_F(TouchFixture, LoadedDriverDeliversThroughTheFrameAndFallsBackOnError)
{
    LogCapture capture;
    GUI_touchDriverError.setValue(false);
    EXPECT_FALSE(touch->loadTouchDriver("evdev:/nonexistent/event3"));
    EXPECT_TRUE(capture.contains("Cannot open touch device /nonexistent/event3: No such file or directory"));
    EXPECT_TRUE(GUI_touchDriverError.toBool());
    EXPECT_FALSE(touch->loadTouchDriver("maxtouch"));
    EXPECT_TRUE(capture.contains("Unknown touch driver: maxtouch"));
    EXPECT_EQ(touch->touchDriver(), nullptr);

    Pipe pipe;
    ASSERT_TRUE(touch->loadTouchDriver(QStringLiteral("evdev:/proc/self/fd/%1").arg(pipe.fds[0])));
    ASSERT_NE(touch->touchDriver(), nullptr);
    VirtualTouchDevice finger(pipe.fds[1], QSize(800, 480));
    finger.sendTouched(2, QPoint(150, 150));
    finger.sendReleased(2, QPoint(150, 150));
    ASSERT_TRUE(touch->touchDriver()->waitForEvents(2, 5000));
    GUI_touchDriverError.setValue(false);
    device.startFrame();
    EXPECT_EQ(take(),
              QStringList({"button:touched 2 150,150", "button:tapped 2 150,150", "button:released 2"}));

    // A failing controller is dropped; the display goes on with the mouse.
    GUI_touchDriverError.setValue(true);
    device.startFrame();
    EXPECT_EQ(touch->touchDriver(), nullptr);
    EXPECT_TRUE(device.cursorShown());
    press(0, QPoint(150, 150));
    EXPECT_EQ(take(), QStringList({"button:touched 0 150,150"}));
    GUI_touchDriverError.setValue(false);
    DataValueManager::instance()->processPendingChanges();
}
