#include "control/Switch.h"
#include "DataValue.h"
#include "support/ControlFixture.h"

#include <QSignalSpy>

namespace {

// An 80 x 44 switch at (100, 100): the knob's centre travels 36 pixels, from x 122 to 158.
struct SwitchTest : ControlFixture
{
    Switch* control = new Switch(device.views(), "switch");
    QList<bool> toggles;

    SwitchTest()
    {
        control->moveTo(100, 100);
        control->resizeTo(80, 44);
        QObject::connect(control, &Switch::toggled, [this](Switch* sender, bool on) {
            EXPECT_EQ(sender, control);
            toggles << on;
        });
    }
};

} // namespace

TEST_F(SwitchTest, ATapTogglesAndTheKnobSlidesOutQuickly)
{
    tap(QPoint(120, 122));
    EXPECT_EQ(toggles, QList<bool>({true}));
    EXPECT_TRUE(control->isOn());
    EXPECT_EQ(control->knobPosition(), 0.0);
    tick(60);
    // An exponential ease-out has covered three quarters of the way a fifth into its time.
    EXPECT_NEAR(control->knobPosition(), 0.75, 0.01);
    tick(240);
    EXPECT_EQ(control->knobPosition(), 1.0);
    EXPECT_FALSE(control->isSliding());

    tap(QPoint(120, 122));
    tick(300);
    EXPECT_EQ(toggles, QList<bool>({true, false}));
    EXPECT_EQ(control->knobPosition(), 0.0);
}

TEST_F(SwitchTest, DraggingTheKnobPastTheMiddleTurnsTheSwitch)
{
    press(QPoint(122, 122));
    move(QPoint(141, 122)); // 19 of 36 pixels
    EXPECT_NEAR(control->knobPosition(), 19.0 / 36, 1e-9);
    release(QPoint(141, 122));
    EXPECT_EQ(toggles, QList<bool>({true}));
    tick(300);
    EXPECT_EQ(control->knobPosition(), 1.0);
}

TEST_F(SwitchTest, AShortDragLetsTheKnobSlideBack)
{
    press(QPoint(122, 122));
    move(QPoint(139, 122)); // 17 of 36: not past the middle
    release(QPoint(139, 122));
    EXPECT_TRUE(toggles.isEmpty());
    EXPECT_FALSE(control->isOn());
    EXPECT_TRUE(control->isSliding());
    tick(300);
    EXPECT_EQ(control->knobPosition(), 0.0);
}

TEST_F(SwitchTest, TheKnobStopsAtTheEndsWhereverTheFingerGoes)
{
    press(QPoint(122, 122));
    move(QPoint(400, 300));
    EXPECT_EQ(control->knobPosition(), 1.0);
    EXPECT_TRUE(control->isPressed());
    move(QPoint(0, 122));
    EXPECT_EQ(control->knobPosition(), 0.0);
    release(QPoint(0, 122));
    EXPECT_TRUE(toggles.isEmpty());
}

TEST_F(SwitchTest, FlippedSwitchesTurnOnToTheLeft)
{
    control->setStyle(Style(QStringLiteral("FlipValue:1")));
    press(QPoint(158, 122));
    move(QPoint(130, 122));
    release(QPoint(130, 122));
    EXPECT_EQ(toggles, QList<bool>({true}));
}

TEST_F(SwitchTest, ABoundValueMovesTheSwitchAndFollowsIt)
{
    DataValue heating(QStringLiteral("test_seatHeating"), 0);
    control->setValueSource(heating);
    {
        DataValue::EventLocker lock(&heating);
        heating.setValue(1);
    }
    DataValueManager::instance()->processPendingChanges();
    EXPECT_TRUE(control->isOn());
    EXPECT_EQ(toggles, QList<bool>({true}));
    tap(QPoint(120, 122));
    EXPECT_EQ(heating.toReal(), 0.0);
    control->clearValueSource();

    control->setOn(true, false);
    EXPECT_EQ(control->knobPosition(), 1.0);
    control->setOn(true);
    EXPECT_EQ(toggles, QList<bool>({true, false, true}));
    EXPECT_EQ(control->naturalSize(-1), QSizeF(80, 44));
    control->setStyle(Style(QStringLiteral("SwitchType:large")));
    EXPECT_EQ(control->naturalSize(-1), QSizeF(112, 60));
}
