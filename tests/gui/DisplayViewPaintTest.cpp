#include "DisplayDevice.h"
#include "DisplayViewOverlay.h"
#include "support/ColorView.h"
#include "support/QtPrinters.h"

#include <QImage>
#include <gtest/gtest.h>

namespace {
struct Paint : ::testing::Test
{
    QStringList log;
    ColorView root{nullptr, "root", Qt::white, &log};
    QImage image{100, 100, QImage::Format_ARGB32_Premultiplied};

    Paint()
    {
        root.resizeTo(100, 100);
        image.fill(Qt::black);
    }
    ColorView* add(DisplayView* parent, const char* name, QRect rect, QColor color)
    {
        ColorView* view = new ColorView(parent, name, color, &log);
        view->moveTo(rect.x(), rect.y());
        view->resizeTo(rect.width(), rect.height());
        return view;
    }
    void paint()
    {
        QPainter painter(&image);
        root.drawViewAndChildren(painter);
    }
    QColor at(int x, int y) const { return QColor(image.pixel(x, y)); }
};

// Colour channels after the raster engine's 8-bit blending.
void expectColor(const QColor& actual, int r, int g, int b)
{
    EXPECT_NEAR(actual.red(), r, 2);
    EXPECT_NEAR(actual.green(), g, 2);
    EXPECT_NEAR(actual.blue(), b, 2);
}
} // namespace

TEST_F(Paint, ListOrderWithChildrenOverTheirParentAndOverlaysOnTop)
{
    ColorView* a = add(&root, "a", QRect(10, 10, 40, 40), Qt::red);
    ColorView* inner = add(a, "inner", QRect(0, 0, 10, 10), Qt::green);
    add(&root, "b", QRect(30, 30, 40, 40), Qt::blue);
    a->overlayColor = QColor(255, 255, 0);
    a->overlayColor.setAlpha(0); // logged, but invisible for the first check
    paint();
    EXPECT_EQ(log, QStringList({"root", "a", "inner", "inner:overlay", "a:overlay", "b", "b:overlay"}));
    expectColor(at(5, 5), 255, 255, 255);
    expectColor(at(15, 15), 0, 255, 0); // child above its parent
    expectColor(at(25, 25), 255, 0, 0);
    expectColor(at(35, 35), 0, 0, 255); // the later sibling on top
    expectColor(at(75, 75), 255, 255, 255);

    a->overlayColor = Qt::yellow;
    inner->raise(); // alone in its list: order unchanged
    paint();
    expectColor(at(15, 15), 255, 255, 0); // the overlay covers the children
    expectColor(at(35, 35), 0, 0, 255);
}

TEST_F(Paint, OpacityMultipliesDownTheTree)
{
    ColorView* half = add(&root, "half", QRect(0, 0, 50, 50), Qt::red);
    half->setAlpha(0.5f);
    ColorView* quarter = add(half, "quarter", QRect(0, 0, 10, 10), Qt::blue);
    quarter->setAlpha(0.5f);
    paint();
    expectColor(at(20, 20), 255, 128, 128);
    // Blue at 0.25 over the half-red-on-white.
    expectColor(at(5, 5), 191, 96, 159);
    expectColor(at(60, 60), 255, 255, 255);
}

TEST_F(Paint, HiddenChildrenAndAreasOutsideTheParentStayUnpainted)
{
    ColorView* box = add(&root, "box", QRect(10, 10, 20, 20), Qt::red);
    add(box, "spill", QRect(10, 10, 40, 40), Qt::green);
    ColorView* hidden = add(&root, "hidden", QRect(60, 60, 20, 20), Qt::blue);
    hidden->hide();
    paint();
    expectColor(at(25, 25), 0, 255, 0);
    expectColor(at(35, 35), 255, 255, 255); // clipped by box
    expectColor(at(70, 70), 255, 255, 255);
    EXPECT_FALSE(log.contains("hidden"));

    // The painter comes back with its own clip and opacity.
    QPainter painter(&image);
    painter.setOpacity(0.7);
    root.drawViewAndChildren(painter);
    EXPECT_DOUBLE_EQ(painter.opacity(), 0.7);
    EXPECT_FALSE(painter.hasClipping());
}

TEST_F(Paint, OverlayObjectsAndDebugPadding)
{
    class Frame : public DisplayViewOverlay
    {
    public:
        void draw(DisplayView* view, QPainter& painter) override
        {
            painter.fillRect(QRect(0, 0, view->width(), 2), Qt::magenta);
        }
    } frame;
    ColorView* box = add(&root, "box", QRect(10, 10, 20, 20), Qt::red);
    box->setOverlay(&frame);
    DisplayDevice::debugPadding = true;
    box->setTouchPadding(Padding(5));
    paint();
    DisplayDevice::debugPadding = false;
    expectColor(at(15, 10), 255, 0, 255);
    expectColor(at(15, 15), 255, 0, 0);
    expectColor(at(20, 29), 255, 0, 255); // the view's outline
    box->setOverlay(nullptr);
}

TEST_F(Paint, BackgroundColourAndOpacity)
{
    DisplayView* plain = new DisplayView(&root, "plain");
    plain->resizeTo(50, 50);
    plain->setBackgroundColor(SkinColor(Qt::blue), 0.5);
    paint();
    expectColor(at(10, 10), 128, 128, 255);
    plain->clearBackground();
    paint();
    expectColor(at(10, 10), 255, 255, 255);
}
