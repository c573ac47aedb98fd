#include "control/ControlBase.h"
#include "DisplayImage.h"
#include "support/ControlFixture.h"
#include "support/QtPrinters.h"
#include "support/TouchRecorderView.h"

namespace {

// A control at (100, 100) 200 x 100 whose signals are written to a log.
struct ControlBaseTest : ControlFixture
{
    QStringList events;
    QStringList underneath;
    TouchRecorderView* below =
        new TouchRecorderView(device.views(), "below", QRect(0, 0, 800, 480), &underneath);
    ControlBase* control = new ControlBase(device.views());

    ControlBaseTest()
    {
        control->setViewName(QStringLiteral("control"));
        control->moveTo(100, 100);
        control->resizeTo(200, 100);
        note(qOverload<ControlBase*>(&ControlBase::touched), "touched");
        note(qOverload<ControlBase*>(&ControlBase::released), "released");
        note(qOverload<ControlBase*>(&ControlBase::tapped), "tapped");
        note(&ControlBase::held, "held");
        note(&ControlBase::draggedIn, "draggedIn");
        note(&ControlBase::draggedOut, "draggedOut");
        note(&ControlBase::selected, "selected");
        note(qOverload<ControlBase*>(&ControlBase::stateChanged), "stateChanged");
        note(&ControlBase::cancelTouched, "cancelTouched");
    }

    template <typename Signal> void note(Signal signal, const char* name)
    {
        QObject::connect(control, signal, [this, name](ControlBase* sender) {
            EXPECT_EQ(sender, control);
            events << QString::fromLatin1(name);
        });
    }
    QStringList take()
    {
        QStringList taken = events;
        events.clear();
        return taken;
    }
    int count(const char* name) const { return events.count(QString::fromLatin1(name)); }
};

} // namespace

TEST_F(ControlBaseTest, APressIsHeldOnceOnTheFirstTickStrictlyAfterTheHoldTime)
{
    control->setHoldTime(500);
    press(QPoint(150, 150));
    EXPECT_EQ(take(), QStringList({"stateChanged", "touched"}));
    EXPECT_EQ(control->state(), ControlBase::ControlStates(ControlBase::Pressed));
    tick(500);
    EXPECT_EQ(count("held"), 0);
    tick(1);
    EXPECT_EQ(take(), QStringList({"held"}));
    EXPECT_TRUE(control->isHeld());
    tick(1000);
    tick(1000);
    EXPECT_TRUE(take().isEmpty());
    release(QPoint(150, 150));
    EXPECT_EQ(take(), QStringList({"stateChanged", "released"}));
    EXPECT_EQ(control->timeHeld(), 2501);
    EXPECT_FALSE(control->isHeld());

    press(QPoint(150, 150));
    EXPECT_EQ(control->timeHeld(), -1);
    tick(501);
    EXPECT_EQ(count("held"), 1);
}

TEST_F(ControlBaseTest, HoldTimesBelowOneNeverHold)
{
    for (int holdTime : {-1, 0}) {
        control->setHoldTime(holdTime);
        press(QPoint(150, 150));
        tick(10000);
        release(QPoint(150, 150));
        EXPECT_EQ(count("held"), 0) << holdTime;
        EXPECT_EQ(control->timeHeld(), -1);
    }
}

TEST_F(ControlBaseTest, DraggingOutAndBackInRestartsTheHoldTimerFromZero)
{
    control->setHoldTime(500);
    press(QPoint(150, 150));
    tick(300);
    move(QPoint(350, 150));
    EXPECT_EQ(control->timeHeld(), 300);
    tick(300);
    move(QPoint(250, 150));
    tick(400);
    EXPECT_EQ(count("held"), 0);
    tick(101);
    EXPECT_EQ(take(), QStringList({"stateChanged", "touched", "draggedOut", "stateChanged", "draggedIn",
                                   "stateChanged", "held"}));
    // The finger stayed with the control while it was over the view below.
    EXPECT_TRUE(underneath.isEmpty());
}

TEST_F(ControlBaseTest, ReleasingOutsideGivesNoReleasedAndTheTouchPaddingCountsAsInside)
{
    control->setTouchPadding(Padding(0, 20, 0, 0));
    press(QPoint(150, 150));
    move(QPoint(319, 150)); // the padding's last column
    EXPECT_TRUE(control->isPressed());
    move(QPoint(320, 150));
    EXPECT_FALSE(control->isPressed());
    EXPECT_TRUE(control->isTouchActive());
    release(QPoint(320, 150));
    EXPECT_EQ(take(), QStringList({"stateChanged", "touched", "draggedOut", "stateChanged"}));
    EXPECT_FALSE(control->isTouchActive());
    EXPECT_EQ(control->state(), ControlBase::ControlStates());

    // A press in the padding lands on the control itself.
    tap(QPoint(310, 120));
    EXPECT_EQ(take(), QStringList({"stateChanged", "touched", "tapped", "stateChanged", "released"}));
    EXPECT_TRUE(underneath.isEmpty());
}

TEST_F(ControlBaseTest, StayingPressedIgnoresLeavingTheArea)
{
    control->setStayPressedWhenDraggedOut(true);
    press(QPoint(150, 150));
    move(QPoint(600, 400));
    EXPECT_TRUE(control->isPressed());
    release(QPoint(600, 400));
    EXPECT_EQ(take(), QStringList({"stateChanged", "touched", "stateChanged", "released"}));
}

TEST_F(ControlBaseTest, SelectingTwiceSelectsOnceAndDeselectingOnlyChangesTheState)
{
    control->setSelected(true);
    control->setSelected(true);
    EXPECT_EQ(take(), QStringList({"stateChanged", "selected"}));
    EXPECT_EQ(int(control->state()), 4);
    control->setSelected(false);
    EXPECT_EQ(take(), QStringList({"stateChanged"}));

    // A handler that deselects while being told of the selection is ignored.
    QObject::connect(control, &ControlBase::selected, [this] { control->setSelected(false); });
    control->setSelected(true);
    EXPECT_TRUE(control->isSelected());
    EXPECT_EQ(take(), QStringList({"stateChanged", "selected"}));
}

TEST_F(ControlBaseTest, TheStateWordCombinesPressedDisabledAndSelected)
{
    control->setSelected(true);
    press(QPoint(150, 150));
    EXPECT_EQ(int(control->state()), 5);
    take();
    // Disabled under the finger: the touch is let go and the control goes idle.
    control->disable();
    EXPECT_EQ(int(control->state()), 6);
    EXPECT_EQ(take(), QStringList({"stateChanged", "cancelTouched"}));
    EXPECT_FALSE(control->isTouchActive());
    EXPECT_EQ(control->touchCount(), 0);
    release(QPoint(150, 150));
    EXPECT_TRUE(take().isEmpty());

    // A disabled control takes no touches: they reach the view below.
    tap(QPoint(150, 150));
    EXPECT_EQ(underneath.size(), 3);
    control->enable();
    EXPECT_EQ(int(control->state()), 4);
    EXPECT_TRUE(ControlBase::isValidState(control->state()));
    EXPECT_FALSE(ControlBase::isValidState(ControlBase::ControlStates(8)));
}

TEST_F(ControlBaseTest, ACancelLeavesTheControlIdleWithoutARelease)
{
    control->setHoldTime(100);
    press(QPoint(150, 150));
    control->hide();
    EXPECT_EQ(take(), QStringList({"stateChanged", "touched", "stateChanged", "cancelTouched"}));
    EXPECT_FALSE(control->isPressed());
    EXPECT_FALSE(control->isInside());
    tick(200);
    release(QPoint(150, 150));
    EXPECT_TRUE(take().isEmpty());
}

TEST_F(ControlBaseTest, TheTouchMapLetsTransparentPixelsThrough)
{
    // Opaque on the left half only; the map is a tenth of the control's size.
    QImage pixels(20, 10, QImage::Format_ARGB32);
    pixels.fill(Qt::transparent);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x)
            pixels.setPixel(x, y, qRgba(255, 255, 255, 255));
    DisplayImage map(pixels);
    control->setTouchMap(&map);
    EXPECT_TRUE(control->touchMapContainsPoint(QPoint(99, 50)));
    EXPECT_FALSE(control->touchMapContainsPoint(QPoint(100, 50)));

    tap(QPoint(250, 150));
    EXPECT_TRUE(events.isEmpty());
    EXPECT_EQ(underneath.first(), QStringLiteral("below:touched 0 250,150"));
    tap(QPoint(150, 150));
    EXPECT_EQ(count("tapped"), 1);

    control->setTouchMap(nullptr);
    EXPECT_TRUE(control->touchMap().isNull());
    tap(QPoint(250, 150));
    EXPECT_EQ(count("tapped"), 2);
}

TEST_F(ControlBaseTest, AControlHoldingAFingerTakesTheNextOneFromItsChildren)
{
    QStringList childLog;
    new TouchRecorderView(control, "child", QRect(100, 0, 100, 100), &childLog);
    press(QPoint(120, 150), 0);
    press(QPoint(250, 150), 1);
    EXPECT_TRUE(childLog.isEmpty());
    EXPECT_EQ(control->touchCount(), 2);
    release(QPoint(250, 150), 1);
    release(QPoint(120, 150), 0);
    // Idle again, the child gets its own touches.
    tap(QPoint(250, 150));
    EXPECT_EQ(childLog.size(), 3);
}
