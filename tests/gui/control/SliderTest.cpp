#include "control/Slider.h"
#include "LogCapture.h"
#include "support/ControlFixture.h"
#include "support/QtPrinters.h"

#include <cmath>

namespace {

// A 0..100 slider at (100, 100), 300 x 48: the knob's centre runs from x 114 to 386,
// 2.72 pixels a unit, on y 124.
struct SliderTest : ControlFixture
{
    Slider* slider = new Slider(device.views(), "slider");
    QList<double> changes;
    QList<double> commits;

    SliderTest()
    {
        slider->moveTo(100, 100);
        slider->resizeTo(300, 48);
        slider->setRange(0, 100);
        QObject::connect(slider, qOverload<Slider*, double>(&Slider::valueChanged),
                         [this](Slider*, double value) { changes << value; });
        QObject::connect(slider, &Slider::valueCommitted,
                         [this](Slider*, double value) { commits << value; });
    }
    static int x(double value) { return qRound(114 + value * 2.72); }
};

} // namespace

TEST_F(SliderTest, TheValueFollowsTheFingerNotTheSumOfItsMoves)
{
    slider->setStep(1);
    slider->setValue(20);
    changes.clear();
    // Taken 4 pixels right of the knob's centre: that offset stays.
    press(QPoint(x(20) + 4, 124));
    move(QPoint(x(50) + 4, 130));
    EXPECT_DOUBLE_EQ(slider->value(), 50);
    // Past the end and partly back: still at the end while the finger is beyond it.
    move(QPoint(x(100) + 80, 124));
    move(QPoint(x(100) + 40, 124));
    EXPECT_DOUBLE_EQ(slider->value(), 100);
    move(QPoint(x(75) + 4, 124));
    EXPECT_DOUBLE_EQ(slider->value(), 75);
    EXPECT_TRUE(commits.isEmpty());
    release(QPoint(x(75) + 4, 124));
    EXPECT_EQ(changes, QList<double>({50, 100, 75}));
    EXPECT_EQ(commits, QList<double>({75}));
}

TEST_F(SliderTest, DraggedOffItsEndItClampsToTheLastStep)
{
    slider->setRange(0, 95);
    slider->setStep(10);
    press(QPoint(114, 124));
    move(QPoint(150, 124));
    move(QPoint(700, 124));
    release(QPoint(700, 124));
    EXPECT_DOUBLE_EQ(slider->value(), 90);
    for (double value : changes)
        EXPECT_DOUBLE_EQ(std::fmod(value, 10), 0) << value;
    EXPECT_EQ(commits, QList<double>({90}));
}

TEST_F(SliderTest, ATapOnTheTrackJumpsThereAndATapOnTheKnobDoesNot)
{
    tap(QPoint(x(60), 124));
    EXPECT_NEAR(slider->value(), 60, 0.5);
    EXPECT_EQ(commits.size(), 1);
    tap(QPoint(x(60) + 10, 124));
    EXPECT_NEAR(slider->value(), 60, 0.5);
    EXPECT_EQ(commits.size(), 1);
}

TEST_F(SliderTest, ABadRangeOrStepIsReportedAndChangesNothing)
{
    LogCapture log;
    slider->setValue(40);
    slider->setRange(5, 5);
    slider->setRange(10, -10);
    slider->setStep(-1);
    EXPECT_EQ(log.assertions(),
              QStringList({"Invalid slider range 5 to 5 View: DisplayDevice/views/slider",
                           "Invalid slider range 10 to -10 View: DisplayDevice/views/slider",
                           "Invalid slider step -1 View: DisplayDevice/views/slider"}));
    EXPECT_EQ(slider->minimum(), 0);
    EXPECT_EQ(slider->maximum(), 100);
    EXPECT_EQ(slider->step(), 0);
    EXPECT_DOUBLE_EQ(slider->value(), 40);

    // A valid range that leaves the value outside brings it in.
    changes.clear();
    slider->setRange(0, 30);
    EXPECT_EQ(changes, QList<double>({30}));
}

TEST_F(SliderTest, VerticalSlidersRiseFromTheBottom)
{
    slider->setOrientation(Qt::Vertical);
    slider->resizeTo(48, 300);
    // The knob's centre runs from y 386 (minimum) up to 114 (maximum).
    tap(QPoint(124, 386 - qRound(25 * 2.72)));
    EXPECT_NEAR(slider->value(), 25, 0.5);
    EXPECT_EQ(slider->knobCenter(100), QPointF(24, 14));
    EXPECT_EQ(slider->naturalSize(-1), QSizeF(48, 240));
}
