#include "support/ControlFixture.h"

#include "DataValue.h"
#include "LogCapture.h"
#include "control/ProgressBar.h"
#include "control/ProgressRing.h"

#include <cmath>

namespace {

struct ProgressTest : ControlFixture
{
    ProgressBar* bar = new ProgressBar(device.views(), "bar");
    ProgressRing* ring = new ProgressRing(device.views(), "ring");
};

TEST_F(ProgressTest, ValuesAreClampedAndABadRangeChangesNothing)
{
    bar->setRange(10, 20);
    bar->setValue(25);
    EXPECT_EQ(bar->value(), 20);
    EXPECT_EQ(bar->shownFraction(), 1.0);
    bar->setValue(12.5);
    EXPECT_DOUBLE_EQ(bar->shownFraction(), 0.25);
    bar->setValue(std::nan(""));
    EXPECT_EQ(bar->value(), 10);

    LogCapture log;
    bar->setRange(5, 5);
    ring->setRange(3, 1);
    EXPECT_EQ(log.messages(),
              QStringList({QStringLiteral("Invalid progress range 5 to 5 View: %1").arg(bar->viewPath()),
                           QStringLiteral("Invalid progress range 3 to 1 View: %1").arg(ring->viewPath())}));
    EXPECT_EQ(bar->minimum(), 10);
    EXPECT_EQ(bar->maximum(), 20);
    EXPECT_EQ(ring->maximum(), 1);

    // A narrower range pulls the value inside it.
    bar->setValue(19);
    bar->setRange(10, 15);
    EXPECT_EQ(bar->value(), 15);
}

TEST_F(ProgressTest, AnimatedChangesGlideAndJumpsDoNot)
{
    ring->setRange(0, 100);
    ring->setValue(40, true);
    tick(0);
    EXPECT_EQ(ring->shownFraction(), 0.0);
    tick(qint64(ProgressRing::kGlideSeconds * 500));
    EXPECT_GT(ring->shownFraction(), 0.2);
    EXPECT_LT(ring->shownFraction(), 0.4);
    tick(qint64(ProgressRing::kGlideSeconds * 500) + 16);
    EXPECT_DOUBLE_EQ(ring->shownFraction(), 0.4);

    // A jump during a glide ends it where the jump goes.
    ring->setValue(90, true);
    tick(50);
    ring->setValue(10);
    tick(qint64(ProgressRing::kGlideSeconds * 1000));
    EXPECT_DOUBLE_EQ(ring->shownFraction(), 0.1);
}

TEST_F(ProgressTest, BoundValuesMoveBarAndRing)
{
    DataValue level(QStringLiteral("Test_progressLevel"), 0.0);
    bar->setRange(0, 5);
    bar->setValueSource(level);
    ring->setRange(0, 5);
    ring->setValueSource(level);
    {
        DataValue::EventLocker lock(level);
        level.setValue(4);
    }
    tick(0);
    EXPECT_EQ(bar->value(), 4);
    EXPECT_EQ(ring->value(), 4);
    // Bound changes glide; by the end both show the value.
    tick(1000);
    EXPECT_DOUBLE_EQ(bar->shownFraction(), 0.8);
    EXPECT_DOUBLE_EQ(ring->shownFraction(), 0.8);
    bar->clearValueSource();
    ring->clearValueSource();
}

TEST_F(ProgressTest, ATurningRingFollowsTheClockAndStopsWhereItIs)
{
    ring->resizeTo(100, 100);
    ring->setTurnPeriod(3);
    tick(750);
    EXPECT_FLOAT_EQ(ring->angle(), 90);
    tick(1500);
    EXPECT_FLOAT_EQ(ring->angle(), 270);
    tick(1500);
    EXPECT_FLOAT_EQ(ring->angle(), 90);
    ring->setTurnPeriod(0);
    tick(1000);
    EXPECT_FLOAT_EQ(ring->angle(), 90);
    // Started again, it goes on from there.
    ring->setTurnPeriod(-4);
    tick(1000);
    EXPECT_FLOAT_EQ(ring->angle(), 0);
}

TEST_F(ProgressTest, StylesSetColoursAndThickness)
{
    ring->setStyle(Style(QStringLiteral("StrokeWidth:14; Color:#112233; StrokeColor:#445566")));
    EXPECT_EQ(ring->thickness(), 14);
    bar->setStyle(Style(QStringLiteral("Color:#abcdef; BackgroundColor:#123456; CornerRadius:3")));
    EXPECT_EQ(bar->barColor().color(), QColor(0xabcdef));
    EXPECT_EQ(bar->fill().color(), QColor(0x123456));
    EXPECT_EQ(bar->cornerRadius(), 3);
}

} // namespace
