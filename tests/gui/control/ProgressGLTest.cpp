#include "ManualClock.h"
#include "StyleManager.h"
#include "control/Panel.h"
#include "control/ProgressBar.h"
#include "control/ProgressRing.h"
#include "support/ColorView.h"
#include "support/PaintComparison.h"
#include "support/ScreenTest.h"

#include <QPainter>

namespace {

const QColor kGround(20, 24, 30);
const QRgb kFill = qRgb(0x40, 0x80, 0xc0);
const QRgb kTrack = qRgb(0x30, 0x38, 0x44);
const QRgb kArc = qRgb(0x60, 0xa0, 0xff);

// Panels, bars and rings on a real screen: their colours where they must be, and
// the same picture as Qt's raster engine draws.
class ProgressGLTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        StyleManager::instance()->initialize();
        mScreen = &open(320, 200, QPoint(900, 300));
        auto* ground = new ColorView(mScreen->views(), "ground", kGround);
        ground->resizeTo(320, 200);
    }

    template <typename View> View* place(View* view, const QRect& rect)
    {
        view->moveTo(rect.x(), rect.y());
        view->resizeTo(rect.width(), rect.height());
        return view;
    }

    ::testing::AssertionResult matchesRaster(DisplayView* view)
    {
        mFrame = frame();
        const QImage onScreen =
            mFrame.copy(view->rect()).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QImage raster(view->size(), QImage::Format_ARGB32_Premultiplied);
        raster.fill(kGround);
        QPainter painter(&raster);
        view->drawViewAndChildren(painter);
        painter.end();
        // Anti-aliased curves are covered a little differently by the two rasterisers.
        const PaintComparison::Difference d = PaintComparison::difference(onScreen, raster, 40);
        if (d.pixels <= view->width() / 2)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << d.pixels << " pixels differ, worst by " << d.worst << " at "
                                             << d.worstAt.x() << "," << d.worstAt.y();
    }
    QRgb shown(int x, int y) const { return at(mFrame, x, y); }

    ManualClock mClock;
    DisplayDevice* mScreen = nullptr;
    QImage mFrame;
};

TEST_F(ProgressGLTest, APanelRoundsItsCornersAndOutlinesInside)
{
    auto* panel = place(
        new Panel(mScreen->views(), "panel", QStringLiteral("BackgroundColor:#4080c0; CornerRadius:16")),
        QRect(20, 20, 120, 80));
    EXPECT_TRUE(matchesRaster(panel));
    EXPECT_EQ(shown(80, 60), kFill);
    EXPECT_EQ(shown(20, 20), kGround.rgb());  // cut off by the corner
    EXPECT_EQ(shown(139, 99), kGround.rgb()); // and the opposite one
    EXPECT_EQ(shown(80, 20), kFill);          // straight edges are not rounded

    panel->setStyle(Style(QStringLiteral("StrokeColor:#303844; StrokeWidth:4")));
    EXPECT_TRUE(matchesRaster(panel));
    EXPECT_EQ(shown(80, 21), kTrack);
    EXPECT_EQ(shown(80, 60), kFill);
}

TEST_F(ProgressGLTest, ABarFillsFromTheStart)
{
    auto* bar =
        place(new ProgressBar(mScreen->views(), "bar",
                              QStringLiteral("BackgroundColor:#303844; Color:#60a0ff; CornerRadius:5")),
              QRect(20, 40, 200, 10));
    bar->setValue(0.5);
    EXPECT_TRUE(matchesRaster(bar));
    EXPECT_EQ(shown(60, 45), kArc);
    EXPECT_EQ(shown(180, 45), kTrack);
    bar->setValue(0);
    frame();
    mFrame = frame();
    EXPECT_EQ(shown(60, 45), kTrack);
}

TEST_F(ProgressGLTest, ARingSweepsClockwiseFromTheTop)
{
    auto* ring = place(new ProgressRing(mScreen->views(), "ring",
                                        QStringLiteral("StrokeWidth:12; Color:#60a0ff; StrokeColor:#303844")),
                       QRect(100, 40, 120, 120));
    ring->setValue(0.25);
    EXPECT_TRUE(matchesRaster(ring));
    const QPoint c(160, 100);
    EXPECT_EQ(shown(c.x() + 10, 46), kArc);  // just after twelve o'clock
    EXPECT_EQ(shown(213, c.y() - 10), kArc); // just before three
    EXPECT_EQ(shown(c.x(), 153), kTrack);    // six o'clock
    EXPECT_EQ(shown(107, c.y()), kTrack);    // nine
    EXPECT_EQ(shown(c.x(), c.y()), kGround.rgb());

    // Turned half way (on its own layer, as turning rings are), the arc is at the
    // bottom left.
    ring->setUseLayer(true);
    ring->setAngle(180, QPointF(60, 60), QVector3D(0, 0, 1));
    frame();
    mFrame = frame();
    EXPECT_EQ(shown(c.x() - 10, 153), kArc);
    EXPECT_EQ(shown(c.x() + 10, 46), kTrack);
}

} // namespace
