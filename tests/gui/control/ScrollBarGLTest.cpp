#include "ManualClock.h"
#include "control/HorizontalScrollBar.h"
#include "control/ScrollableView.h"
#include "support/ColorView.h"
#include "support/GLTestContext.h"
#include "support/ScreenTest.h"

#include <gtest/gtest.h>

namespace {

const QRgb kBackdrop = qRgb(20, 24, 30);

class ScrollBarGLTest : public ScreenTest
{
protected:
    ManualClock clock;
    ScrollableView* scroller = nullptr;

    // A 120 x 200 scroller over a dark backdrop, with content four times its height.
    void openScroller(QSize content)
    {
        DisplayDevice& device = open(120, 200, QPoint(1200, 600));
        auto* backdrop = new ColorView(device.views(), "backdrop", QColor(kBackdrop));
        backdrop->resizeTo(120, 200);
        scroller = new ScrollableView(device.views(), "scroller");
        scroller->resizeTo(120, 200);
        auto* view = new DisplayView(nullptr, "content");
        view->resizeTo(content.width(), content.height());
        scroller->setContent(view);
    }
    // Lets the fade-in finish.
    QImage settledFrame()
    {
        frame();
        clock.advanceMs(600);
        return frame();
    }
    static bool isSlider(QRgb pixel)
    {
        return qRed(pixel) > 170 && qGreen(pixel) > 170 && qBlue(pixel) > 170;
    }
};

} // namespace

// The bar stands 5 from the right edge and 10 from either end; the slider is the
// light picture over the dark content, where the scroll offset puts it.
TEST_F(ScrollBarGLTest, TheSliderIsDrawnWhereTheOffsetPutsIt)
{
    openScroller(QSize(120, 800));
    ASSERT_NE(scroller->scrollBar(), nullptr);
    scroller->scroll(QPointF(0, 300), 0);
    // Bar 180 long, slider trunc(180 / 4) = 45, raised to 60; half-way: 60 down the track.
    const QImage image = settledFrame();
    for (int y = 72; y < 128; y += 4)
        EXPECT_TRUE(isSlider(at(image, 111, y))) << "y " << y;
    EXPECT_TRUE(colorsClose(at(image, 111, 64), kBackdrop, 2));
    EXPECT_TRUE(colorsClose(at(image, 111, 136), kBackdrop, 2));
    EXPECT_TRUE(colorsClose(at(image, 104, 100), kBackdrop, 2));
    EXPECT_TRUE(colorsClose(at(image, 117, 100), kBackdrop, 2));
    // The rim is darker than the middle across the slider.
    EXPECT_LT(qRed(at(image, 107, 100)), qRed(at(image, 111, 100)));
}

TEST_F(ScrollBarGLTest, APullPastTheStartSqueezesTheSliderAtTheTop)
{
    openScroller(QSize(120, 800));
    scroller->scroll(QPointF(0, -1000), 0);
    const QImage image = settledFrame();
    EXPECT_TRUE(isSlider(at(image, 111, 12)));
    for (int y = 16; y < 190; y += 6)
        EXPECT_TRUE(colorsClose(at(image, 111, y), kBackdrop, 2)) << "y " << y;
}

TEST_F(ScrollBarGLTest, AHorizontalBarRunsAlongTheBottom)
{
    openScroller(QSize(480, 200));
    auto* bar = new HorizontalScrollBar(scroller);
    scroller->scroll(QPointF(360, 0), 0); // all the way: the slider ends the track
    bar->resizeToView(scroller);
    bar->setOffset(scroller->contentOffset().x(), scroller->scrollMax().x());
    // 100 long at y 187..195; slider trunc(100 / 4) raised to 60, at 10 + 40.
    const QImage image = settledFrame();
    EXPECT_TRUE(isSlider(at(image, 80, 191)));
    EXPECT_TRUE(isSlider(at(image, 56, 191)));
    EXPECT_TRUE(colorsClose(at(image, 40, 191), kBackdrop, 2));
    EXPECT_TRUE(colorsClose(at(image, 80, 180), kBackdrop, 2));
}
