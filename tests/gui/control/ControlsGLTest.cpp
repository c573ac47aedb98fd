#include "ManualClock.h"
#include "Skin.h"
#include "StyleManager.h"
#include "control/Button.h"
#include "control/Label.h"
#include "control/Slider.h"
#include "control/Switch.h"
#include "input/touch/MouseTouchDriver.h"
#include "input/touch/TouchDevice.h"
#include "support/ColorView.h"
#include "support/GLTestContext.h"
#include "support/PaintComparison.h"
#include "support/ScreenTest.h"

#include <QPainter>

namespace {

const QColor kGround(238, 240, 243);

QRgb skin(const char* name)
{
    return Skin::parseColor(QLatin1String(name)).color().rgb();
}

QRgb blend(QRgb top, qreal alpha, QRgb below)
{
    const auto mix = [&](int a, int b) {
        return qRound(a * alpha + b * (1 - alpha));
    };
    return qRgb(mix(qRed(top), qRed(below)), mix(qGreen(top), qGreen(below)), mix(qBlue(top), qBlue(below)));
}

// Controls on a real screen, driven by touches through the dispatcher's queue on a
// manual clock. Each state is checked twice: the composited frame must show the
// state's colours, and must agree with the raster engine drawing the same view.
class ControlsGLTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        StyleManager::instance()->initialize();
        mScreen = &open(360, 200, QPoint(520, 300));
        auto* ground = new ColorView(mScreen->views(), "ground", kGround);
        ground->resizeTo(360, 200);
    }

    template <typename Control> Control* place(Control* control, const QRect& rect)
    {
        control->moveTo(rect.x(), rect.y());
        control->resizeTo(rect.width(), rect.height());
        return control;
    }
    void finger(bool down, QPoint point)
    {
        TouchDevice::getInstance(mScreen)->mouseDriver()->queueEvent(0, down, point.x(), point.y());
        mScreen->doTick();
    }
    void wait(int ms)
    {
        mClock.advanceMs(ms);
        mScreen->doTick();
    }

    // The control as the next frame shows it, compared with the raster engine's
    // picture of it over the same ground: text by the glyph rule, shapes to within
    // 10 levels (the GPU filters across the seams of stretched nine-patches, the
    // raster engine stops at them).
    ::testing::AssertionResult looksRight(DisplayView* control, bool text)
    {
        mFrame = frame();
        const QImage onScreen =
            mFrame.copy(control->rect()).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QImage raster(control->size(), QImage::Format_ARGB32_Premultiplied);
        raster.fill(kGround);
        QPainter painter(&raster);
        control->drawViewAndChildren(painter);
        painter.end();
        if (text)
            return PaintComparison::textAgrees(onScreen, raster);
        const PaintComparison::Difference d = PaintComparison::difference(onScreen, raster, 10);
        if (d.pixels == 0)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << d.pixels << " pixels differ, worst by " << d.worst << " at "
                                             << d.worstAt.x() << "," << d.worstAt.y();
    }
    QRgb shown(int x, int y) const { return at(mFrame, x, y); }

    ManualClock mClock;
    DisplayDevice* mScreen = nullptr;
    QImage mFrame;
};

} // namespace

TEST_F(ControlsGLTest, ButtonInEveryState)
{
    auto* button = place(
        new Button(mScreen->views(), "button", QStringLiteral("Start"), QStringLiteral("Button/Toggle")),
        QRect(20, 20, 200, 80));
    EXPECT_TRUE(looksRight(button, true));
    EXPECT_EQ(shown(30, 60), skin("buttonColor"));
    EXPECT_EQ(at(mFrame, 20, 20), kGround.rgb()); // outside the rounded corner

    finger(true, QPoint(60, 60));
    EXPECT_TRUE(looksRight(button, true));
    EXPECT_EQ(shown(30, 60), skin("buttonPressedColor"));

    finger(false, QPoint(60, 60)); // a tap: the toggle is selected
    EXPECT_TRUE(button->isSelected());
    EXPECT_TRUE(looksRight(button, true));
    EXPECT_EQ(shown(30, 60), skin("buttonSelectedColor"));

    button->setSelected(false);
    button->disable();
    EXPECT_TRUE(looksRight(button, true));
    EXPECT_TRUE(
        colorsClose(shown(30, 60), blend(skin("buttonColor"), ControlBase::kDisabledOpacity, kGround.rgb())));
}

TEST_F(ControlsGLTest, ButtonColoursPicturesAndIcons)
{
    auto* primary = place(
        new Button(mScreen->views(), "primary", QStringLiteral("Drive"), QStringLiteral("Button/Primary")),
        QRect(10, 10, 160, 80));
    auto* flat = place(
        new Button(mScreen->views(), "flat", QStringLiteral("Auto"), QStringLiteral("Button/ToggleFlat")),
        QRect(190, 10, 160, 80));
    auto* pictured =
        place(new Button(mScreen->views(), "pictured", QStringLiteral("Map"), QStringLiteral("Button/Image")),
              QRect(10, 110, 160, 80));
    auto* icon = place(new Button(mScreen->views(), "icon", QString(),
                                  QStringLiteral("Button/Round; Image:icons/power.png")),
                       QRect(190, 100, 96, 96));
    EXPECT_TRUE(looksRight(primary, true));
    EXPECT_EQ(shown(16, 50), skin("buttonBlueColor"));
    EXPECT_TRUE(looksRight(flat, true));
    EXPECT_EQ(shown(191, 50), skin("buttonOutlineColor"));
    EXPECT_EQ(shown(200, 50), kGround.rgb());
    EXPECT_TRUE(looksRight(pictured, true));
    EXPECT_TRUE(looksRight(icon, false));
    // The one-colour icon takes the title colour.
    EXPECT_EQ(shown(238, 135), skin("foregroundColor"));

    finger(true, QPoint(40, 150));
    EXPECT_TRUE(looksRight(pictured, true));
    EXPECT_EQ(pictured->background().fileName(),
              DisplayImage(QStringLiteral("button-pressed.png")).fileName());
}

TEST_F(ControlsGLTest, SwitchInEveryState)
{
    auto* control = place(new Switch(mScreen->views(), "switch"), QRect(20, 20, 96, 48));
    EXPECT_TRUE(looksRight(control, false));
    EXPECT_EQ(shown(100, 44), skin("switchTrackColor"));
    EXPECT_EQ(shown(44, 44), skin("knobColor"));

    finger(true, QPoint(44, 44));
    EXPECT_TRUE(looksRight(control, false));
    finger(false, QPoint(44, 44));
    wait(Switch::kSlideSeconds * 1000);
    EXPECT_TRUE(control->isOn());
    EXPECT_TRUE(looksRight(control, false));
    EXPECT_EQ(shown(30, 44), skin("switchTrackOnColor"));
    EXPECT_EQ(shown(92, 44), skin("knobColor"));

    control->disable();
    EXPECT_TRUE(looksRight(control, false));
    EXPECT_TRUE(colorsClose(shown(30, 44),
                            blend(skin("switchTrackOnColor"), ControlBase::kDisabledOpacity, kGround.rgb())));
}

TEST_F(ControlsGLTest, SliderInEveryState)
{
    auto* slider = place(new Slider(mScreen->views(), "slider"), QRect(20, 20, 300, 48));
    slider->setValue(0.3);
    auto* upright = place(new Slider(mScreen->views(), "upright", Qt::Vertical), QRect(20, 80, 48, 110));
    upright->setValue(0.75);
    EXPECT_TRUE(looksRight(slider, false));
    EXPECT_EQ(shown(60, 44), skin("sliderFillColor"));
    EXPECT_EQ(shown(250, 44), skin("sliderTrackColor"));
    EXPECT_TRUE(looksRight(upright, false));
    EXPECT_EQ(shown(44, 170), skin("sliderFillColor"));

    const QPointF knob = slider->knobCenter(slider->value()) + QPointF(20, 20);
    finger(true, knob.toPoint());
    EXPECT_TRUE(looksRight(slider, false));
    finger(false, knob.toPoint());

    slider->disable();
    EXPECT_TRUE(looksRight(slider, false));
    EXPECT_TRUE(colorsClose(shown(60, 44),
                            blend(skin("sliderFillColor"), ControlBase::kDisabledOpacity, kGround.rgb())));
}

// The road of one touch: a press repaints the pressed button and nothing else.
TEST_F(ControlsGLTest, APressRepaintsOnlyThePressedButton)
{
    for (int i = 0; i < 6; ++i)
        place(new Button(mScreen->views(), "button", QStringLiteral("Fan %1").arg(i),
                         QStringLiteral("Button/Default")),
              QRect(10 + (i % 3) * 165, 10 + (i / 3) * 95, 160, 80));
    mScreen->doTick();
    const DisplayDevice::FrameStats before = mScreen->frameStats();
    finger(true, QPoint(140, 40));
    EXPECT_EQ(mScreen->frameStats().compositedPixels - before.compositedPixels, 160 * 80);
    EXPECT_EQ(mScreen->frameStats().renderedPixels - before.renderedPixels, 160 * 80);
}
