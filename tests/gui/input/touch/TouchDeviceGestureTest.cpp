#include "ScopedConfigOverride.h"
#include "support/QtPrinters.h"
#include "support/TouchFixture.h"

#include <QMouseEvent>

namespace {
struct Gestures : TouchFixture
{
    TouchRecorderView* map = new TouchRecorderView(device.views(), "map", QRect(0, 0, 800, 480), &log);
    Gestures()
    {
        map->lower();
        map->setTouchGesture(DisplayView::PinchGesture, true);
        map->setTouchGesture(DisplayView::RotateGesture, true);
    }
    void mouse(QEvent::Type type, QPoint pos, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, pos, button, Qt::LeftButton, modifiers);
        touch->mouseEvent(&event);
        device.startFrame();
    }
};
} // namespace

TEST_F(Gestures, TwoFingersOnOneViewPinchAndRotate)
{
    press(0, QPoint(400, 200));
    clock.advanceMs(500); // the second finger lands late but on the same view
    press(1, QPoint(500, 200));
    EXPECT_EQ(touch->getPair(0), 1);
    EXPECT_EQ(touch->getPair(1), 0);
    EXPECT_EQ(touch->getPairCenterPoint(0), QPoint(450, 200));
    move(1, QPoint(600, 200)); // spread to twice the distance
    move(1, QPoint(400, 400)); // a quarter turn clockwise on screen, same distance
    move(0, QPoint(400, 300)); // the other finger halves the distance
    EXPECT_EQ(take(), QStringList({"map:touched 0 400,200", "map:touched 1 500,200", "map:pinched 1 2.000",
                                   "map:rotated 1 90.0", "map:pinched 0 0.500"}));
    release(1, QPoint(400, 400));
    EXPECT_EQ(touch->getPair(0), TouchInfo::kNoPair);
    move(0, QPoint(410, 300)); // the remaining finger drags on from where it is
    EXPECT_EQ(take(), QStringList({"map:released 1", "map:dragged 0 10,0"}));
}

TEST_F(Gestures, ViewsWithoutPinchKeepFingersApart)
{
    press(0, QPoint(150, 150));
    press(1, QPoint(160, 150));
    EXPECT_EQ(touch->getPair(0), TouchInfo::kNoPair);
    EXPECT_EQ(button->touchCount(), 2);
    move(1, QPoint(260, 150));
    EXPECT_EQ(take().last(), "button:dragged 1 100,0");
}

TEST_F(Gestures, MouseWithModifierPinchesAroundTheAnchor)
{
    ScopedConfigOverride anchorX("ui/pinch_anchor_x", 100);
    ScopedConfigOverride anchorY("ui/pinch_anchor_y", 0);
    mouse(QEvent::MouseMove, QPoint(300, 300)); // hovering is no touch
    EXPECT_TRUE(log.isEmpty());
    mouse(QEvent::MouseButtonPress, QPoint(300, 300), Qt::ShiftModifier);
    const int finger = TouchDevice::mouseTouchPointId();
    EXPECT_EQ(touch->getPair(finger), finger + 1);
    mouse(QEvent::MouseMove, QPoint(200, 300)); // away from the anchor at 400,300
    mouse(QEvent::MouseButtonRelease, QPoint(200, 300));
    EXPECT_EQ(take(), QStringList({QStringLiteral("map:touched %1 300,300").arg(finger),
                                   QStringLiteral("map:touched %1 400,300").arg(finger + 1),
                                   QStringLiteral("map:pinched %1 2.000").arg(finger),
                                   QStringLiteral("map:released %1").arg(finger),
                                   QStringLiteral("map:released %1").arg(finger + 1)}));
    EXPECT_EQ(map->touchCount(), 0);

    clock.advanceMs(1000);
    mouse(QEvent::MouseButtonPress, QPoint(150, 150));
    mouse(QEvent::MouseButtonRelease, QPoint(150, 150));
    EXPECT_EQ(take(), QStringList({QStringLiteral("button:touched %1 150,150").arg(finger),
                                   QStringLiteral("button:tapped %1 150,150").arg(finger),
                                   QStringLiteral("button:released %1").arg(finger)}));
}

TEST_F(Gestures, VelocityIsAFitOverTheLastHundredMilliseconds)
{
    press(0, QPoint(150, 150));
    for (int i = 1; i <= 10; ++i) {
        clock.advanceMs(16);
        // 2 px/ms to the right with 8 px of alternating jitter.
        move(0, QPoint(150 + 32 * i + (i % 2 ? 8 : -8), 150));
    }
    // The last two points alone would read 1 px/ms.
    EXPECT_NEAR(touch->getVelocity(0).x(), 2.0, 0.05);
    EXPECT_NEAR(touch->getVelocity(0).y(), 0.0, 1e-9);
    // A view asks for the speed when the finger lifts; afterwards it is gone with the touch.
    struct Flinger : TouchRecorderView
    {
        using TouchRecorderView::TouchRecorderView;
        void released(int id) override { speed = theTouchDevice->getVelocity(id); }
        QPointF speed;
    };
    Flinger* flinger = new Flinger(device.overlays(), "flinger", QRect(0, 0, 800, 480), &log);
    clock.advanceMs(1000);
    press(1, QPoint(100, 100));
    clock.advanceMs(50);
    move(1, QPoint(100, 200));
    release(1, QPoint(100, 200));
    EXPECT_NEAR(flinger->speed.y(), 2.0, 1e-9);
    EXPECT_EQ(touch->getVelocity(1), QPointF());
}
