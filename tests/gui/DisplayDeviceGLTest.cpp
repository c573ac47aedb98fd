#include "DisplayDevice.h"
#include "DisplayDeviceWidget.h"
#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "support/ColorView.h"
#include "support/GLTestContext.h"
#include "support/ScopedGLRecorder.h"

#include <GLUtils.h>
#include <TextureCache.h>

#include <QGLFramebufferObject>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <gtest/gtest.h>

namespace {

const QRgb kBlack = qRgb(0, 0, 0);
const QRgb kRed = qRgb(255, 0, 0);
const QRgb kGreen = qRgb(0, 255, 0);
const QRgb kBlue = qRgb(0, 0, 255);

// Turns green when touched.
class TouchColorView : public ColorView
{
public:
    using ColorView::ColorView;
    void touched(int, QPoint) override
    {
        color = Qt::green;
        update();
    }
};

// Draws a picture it has never drawn before, every time.
class FreshPictureView : public DisplayView
{
public:
    using DisplayView::DisplayView;
    void draw(QPainter& painter) override
    {
        QImage picture(1024, 1024, QImage::Format_ARGB32_Premultiplied);
        picture.fill(QColor(++mDraws % 256, 0, 0));
        painter.drawImage(QRect(0, 0, width(), height()), picture);
    }

private:
    int mDraws = 0;
};

// An antialiased ring, filled through a coverage mask.
class RingView : public DisplayView
{
public:
    using DisplayView::DisplayView;
    void draw(QPainter& painter) override
    {
        QPainterPath ring;
        ring.addEllipse(QRectF(6, 6, 36, 36));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(96, 160, 255), 6));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(ring);
    }
};

// Notes that the window received a button press (and lets it through).
class PressWatcher : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonPress)
            pressed = true;
        return false;
    }
    bool pressed = false;
};

// A shown screen whose frames the test runs by hand.
class DisplayDeviceGLTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        mDevice.reset();
        DisplayDevice::windowScale = 1.0;
        DisplayDevice::rotateOrientation = 0;
    }

    // Other GL tests may run at the same time on the same X server: `position`
    // keeps a window out of their way.
    DisplayDevice& open(int width = 64, int height = 48, QPoint position = QPoint())
    {
        mDevice = std::make_unique<DisplayDevice>(width, height);
        mDevice->timer()->stop();
        mDevice->setPosition(position);
        mDevice->setVisible(true);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(mDevice->widget()));
        return *mDevice;
    }

    // The composited frame, as the next tick draws it.
    QImage frame()
    {
        const QString path = mDir.filePath(QStringLiteral("frame%1.png").arg(mShots++));
        mDevice->screenshot(path);
        mDevice->doTick();
        QThreadPool::globalInstance()->waitForDone();
        return QImage(path);
    }

    template <typename View = ColorView>
    View* add(DisplayView* parent, const char* name, QColor color, const QRect& rect, bool layer = false)
    {
        auto* view = new View(parent, name, color);
        view->moveTo(rect.x(), rect.y());
        view->resizeTo(rect.width(), rect.height());
        view->setUseLayer(layer);
        return view;
    }

    static QRgb at(const QImage& image, int x, int y) { return image.pixel(x, y) | 0xff000000; }

    QTemporaryDir mDir;
    int mShots = 0;
    std::unique_ptr<DisplayDevice> mDevice;
};

TEST_F(DisplayDeviceGLTest, OneTickRendersDirtyViewsIntoTheirLayersAndOntoTheWindow)
{
    DisplayDevice& device = open();
    ASSERT_TRUE(device.hasWindow());
    auto* plain = add(device.views(), "plain", Qt::red, QRect(4, 4, 10, 10));
    auto* layered = add(device.views(), "layered", Qt::green, QRect(30, 20, 20, 10), true);

    const QImage image = frame();
    ASSERT_EQ(image.size(), QSize(64, 48));
    EXPECT_EQ(at(image, 4, 4), kRed);
    EXPECT_EQ(at(image, 13, 13), kRed);
    EXPECT_EQ(at(image, 14, 14), kBlack);
    EXPECT_EQ(at(image, 30, 20), kGreen);
    EXPECT_EQ(at(image, 49, 29), kGreen);
    EXPECT_EQ(at(image, 50, 29), kBlack);
    // The layer holds the view's own pixels, at its own origin.
    const QImage layer = layered->layer()->framebuffer()->toImage();
    ASSERT_EQ(layer.size(), QSize(20, 10));
    EXPECT_EQ(layer.pixel(0, 0) | 0xff000000, kGreen);
    // ... and the root layer no longer has the layered child painted into it.
    const QImage root = device.layer()->framebuffer()->toImage();
    EXPECT_EQ(qAlpha(root.pixel(35, 25)), 0);
    EXPECT_EQ(root.pixel(5, 5), qRgba(255, 0, 0, 255));
    int layers = 0;
    EXPECT_EQ(device.layerMemory(&layers), (64 * 48 + 20 * 10) * 4);
    EXPECT_EQ(layers, 2);
}

TEST_F(DisplayDeviceGLTest, OnlyDirtyRectanglesAreRenderedAndComposited)
{
    DisplayDevice& device = open();
    auto* first = add(device.views(), "first", Qt::red, QRect(0, 0, 8, 8));
    auto* second = add(device.views(), "second", Qt::red, QRect(20, 20, 8, 6));
    device.doTick();
    const DisplayDevice::FrameStats before = device.frameStats();

    first->color = Qt::blue;
    second->color = Qt::blue;
    second->update();
    device.doTick();
    EXPECT_EQ(device.frameStats().renderedPixels - before.renderedPixels, 8 * 6);
    EXPECT_EQ(device.frameStats().compositedPixels - before.compositedPixels, 8 * 6);

    const QImage image = frame();
    EXPECT_EQ(at(image, 21, 21), kBlue);
    // Never told: still the colour it had when last rendered.
    EXPECT_EQ(at(image, 2, 2), kRed);

    // With dirty rectangles off every frame renders everything.
    ScopedConfigOverride all("ui/dirty_rects", false);
    const qint64 rendered = device.frameStats().renderedPixels;
    device.doTick();
    EXPECT_EQ(device.frameStats().renderedPixels - rendered, 64 * 48);
    EXPECT_EQ(at(frame(), 2, 2), kBlue);
}

TEST_F(DisplayDeviceGLTest, AnIdleFrameReachesNoDriver)
{
    DisplayDevice& device = open();
    auto* view = add(device.views(), "view", Qt::red, QRect(0, 0, 10, 10));
    device.doTick();
    const int drawn = device.frameStats().drawnFrames;
    {
        ScopedGLRecorder recorder(gfx::GLFunctions::current());
        device.doTick();
        device.doTick();
        EXPECT_EQ(recorder.totalCalls(), 0);
        EXPECT_EQ(device.frameStats().drawnFrames, drawn);
        EXPECT_EQ(device.frameStats().ticks, 3);

        view->update();
        device.doTick();
        EXPECT_GT(recorder.count("glDrawArrays"), 0);
        EXPECT_EQ(device.frameStats().drawnFrames, drawn + 1);
    }
}

TEST_F(DisplayDeviceGLTest, WindowScaleDoublesPixelsAndPadsRevealsToWholeOnes)
{
    DisplayDevice::windowScale = 2.0;
    DisplayDevice& device = open(32, 24);
    EXPECT_EQ(device.widget()->size(), QSize(64, 48));
    auto* view = add(device.views(), "view", Qt::green, QRect(5, 5, 6, 6));
    device.doTick();
    const qint64 composited = device.frameStats().compositedPixels;
    view->update();
    device.doTick();
    // left 5, top 5, right 10, bottom 10 becomes 4..15 both ways.
    EXPECT_EQ(device.frameStats().compositedPixels - composited, 12 * 12);

    const QImage image = frame();
    ASSERT_EQ(image.size(), QSize(64, 48));
    EXPECT_EQ(at(image, 10, 10), kGreen);
    EXPECT_EQ(at(image, 21, 21), kGreen);
    EXPECT_EQ(at(image, 22, 22), kBlack);
    EXPECT_EQ(at(image, 9, 9), kBlack);
}

TEST_F(DisplayDeviceGLTest, RotationTurnsTheWindow)
{
    DisplayDevice::rotateOrientation = 90;
    DisplayDevice& device = open(64, 48);
    EXPECT_EQ(device.widget()->size(), QSize(48, 64));
    auto* corner = add(device.views(), "corner", Qt::red, QRect(0, 0, 4, 4));
    // A quarter turn clockwise takes the top-left corner to the top right.
    const QImage image = frame();
    EXPECT_EQ(at(image, 46, 1), kRed);
    EXPECT_EQ(at(image, 1, 1), kBlack);
}

TEST_F(DisplayDeviceGLTest, LayersAreCompositedWithTheirOpacityAndTransformOnce)
{
    DisplayDevice& device = open();
    auto* faded = add(device.views(), "faded", Qt::white, QRect(0, 0, 10, 10), true);
    faded->setAlpha(0.5f);
    auto* container = new DisplayView(device.views(), "container");
    container->moveTo(20, 0);
    container->resizeTo(40, 40);
    container->setAlpha(0.5f);
    auto* nested = add(container, "nested", Qt::white, QRect(0, 0, 10, 10), true);
    auto* scaled = add(device.views(), "scaled", Qt::green, QRect(0, 30, 8, 8), true);
    scaled->setScale(2.0f, QPointF(0, 0));

    const QImage image = frame();
    EXPECT_TRUE(colorsClose(at(image, 5, 5), qRgb(128, 128, 128), 3)) << std::hex << at(image, 5, 5);
    EXPECT_TRUE(colorsClose(at(image, 25, 5), qRgb(128, 128, 128), 3)) << std::hex << at(image, 25, 5);
    EXPECT_EQ(at(image, 15, 40), kGreen);
    EXPECT_EQ(at(image, 17, 40), kBlack);
}

TEST_F(DisplayDeviceGLTest, TransformingALayerOnlyRecompositesTheScreen)
{
    DisplayDevice& device = open();
    add(device.views(), "back", Qt::blue, QRect(0, 0, 64, 48));
    auto* turned = add(device.views(), "turned", Qt::red, QRect(10, 10, 10, 10), true);
    frame();
    const DisplayDevice::FrameStats before = device.frameStats();
    turned->setScale(2.0f, QPointF(0, 0));
    device.doTick();
    EXPECT_EQ(device.frameStats().renderedPixels, before.renderedPixels);
    // The old area and the new one, which holds it.
    EXPECT_EQ(device.frameStats().compositedPixels - before.compositedPixels, 20 * 20);
    QImage image = frame();
    EXPECT_EQ(at(image, 25, 25), kRed);
    EXPECT_EQ(at(image, 31, 31), kBlue);
    turned->setScale(1.0f, QPointF(0, 0));
    image = frame();
    EXPECT_EQ(at(image, 15, 15), kRed);
    EXPECT_EQ(at(image, 25, 25), kBlue);

    // Nested, the parent layer holds the pixels and must be redrawn where the layer was.
    auto* parent = add(device.views(), "parent", Qt::blue, QRect(30, 0, 34, 48), true);
    parent->setCompositeNestedLayers(true);
    auto* nested = add(parent, "nested", Qt::green, QRect(0, 0, 8, 8), true);
    frame();
    nested->setScale(2.0f, QPointF(0, 0));
    image = frame();
    EXPECT_EQ(at(image, 44, 14), kGreen);
    nested->setScale(1.0f, QPointF(0, 0));
    image = frame();
    EXPECT_EQ(at(image, 44, 14), kBlue);
    EXPECT_EQ(at(image, 34, 4), kGreen);
}

TEST_F(DisplayDeviceGLTest, EachLayerIsCompositedOnceOverTheWholeDamage)
{
    DisplayDevice& device = open();
    auto* first = add(device.views(), "first", Qt::red, QRect(0, 0, 10, 10));
    auto* second = add(device.views(), "second", Qt::green, QRect(40, 30, 10, 10));
    auto* turned = add(device.views(), "turned", Qt::blue, QRect(20, 20, 10, 10), true);
    frame();
    {
        ScopedGLRecorder recorder(gfx::GLFunctions::current());
        first->update();
        second->update();
        device.doTick();
        // Each rectangle is cleared; the views, of two colours, are drawn into the
        // root layer together, which reaches the screen in one draw.
        EXPECT_EQ(recorder.count("glClear"), 2);
        EXPECT_EQ(recorder.count("glDrawArrays"), 1 + 1);
    }
    // A turned layer is cut only by the scissor: where it reaches out of the damage
    // the damage is drawn rectangle by rectangle.
    turned->setAngle(30);
    frame();
    {
        ScopedGLRecorder recorder(gfx::GLFunctions::current());
        first->update();
        second->update();
        turned->update(QRect(0, 0, 2, 2));
        device.doTick();
        // The two views and the layer's corner; the root layer in each of the three
        // rectangles and the turned layer in its own.
        EXPECT_EQ(recorder.count("glDrawArrays"), 1 + 1 + 3 + 1);
    }
    const QImage image = frame();
    EXPECT_EQ(at(image, 5, 5), kRed);
    EXPECT_EQ(at(image, 45, 35), kGreen);
    EXPECT_EQ(at(image, 25, 25), kBlue);
}

TEST_F(DisplayDeviceGLTest, NestedLayersAreCompositedIntoTheirParentLayer)
{
    DisplayDevice& device = open();
    auto* parent = add(device.views(), "parent", Qt::blue, QRect(10, 10, 30, 30), true);
    parent->setCompositeNestedLayers(true);
    auto* child = add(parent, "child", Qt::red, QRect(5, 5, 10, 10), true);

    QImage image = frame();
    EXPECT_EQ(at(image, 16, 16), kRed);
    EXPECT_EQ(at(image, 12, 12), kBlue);
    const QImage parentPixels = parent->layer()->framebuffer()->toImage();
    EXPECT_EQ(parentPixels.pixel(6, 6) | 0xff000000, kRed);

    // A change of the child alone reaches the screen through the parent.
    child->color = Qt::green;
    child->update();
    image = frame();
    EXPECT_EQ(at(image, 16, 16), kGreen);
    EXPECT_EQ(at(image, 12, 12), kBlue);
}

TEST_F(DisplayDeviceGLTest, OversizedLayersAreRefused)
{
    ScopedConfigOverride limit("ui/max_single_layer_area", 100);
    DisplayDevice& device = open();
    auto* big = add(device.views(), "big", Qt::red, QRect(0, 0, 20, 20), true);
    LogCapture log;
    device.doTick();
    const QString message = QStringLiteral(
        "Trying to draw a layer that exceeds the maximum area of 100: 20 x 20 View: DisplayDevice/views/big");
    EXPECT_EQ(log.count(message), 2); // the warning and the assertion
    EXPECT_EQ(big->layer()->framebuffer(), nullptr);
}

TEST_F(DisplayDeviceGLTest, EveryPaintRouteDrawsTheSameFrame)
{
    DisplayDevice& device = open();
    auto* back = add(device.views(), "back", QColor(30, 60, 90), QRect(0, 0, 64, 48));
    auto* half = add(device.views(), "half", QColor(255, 0, 0, 128), QRect(8, 8, 20, 20));
    auto* layered = add(device.views(), "layered", Qt::green, QRect(34, 10, 20, 20), true);
    layered->setLayerBackingType(ViewBuffer::OpaqueBacking);
    const QImage framework = frame();
    const auto sameAs = [&](const QImage& image) {
        for (int y = 0; y < 48; y += 3)
            for (int x = 0; x < 64; x += 3)
                if (!colorsClose(at(image, x, y), at(framework, x, y), 3))
                    return ::testing::AssertionFailure() << "differs at " << x << "," << y;
        return ::testing::AssertionSuccess();
    };
    EXPECT_TRUE(colorsClose(at(framework, 10, 10), qRgb(143, 30, 45), 3))
        << std::hex << at(framework, 10, 10);
    for (const char* key : {"ui/qt_paint_engine", "ui/gfx_content_rasterization"}) {
        ScopedConfigOverride route(key, true);
        device.markDirtyRectsForRendering(true, true);
        EXPECT_TRUE(sameAs(frame())) << key;
    }
    layered->setLayerBackingType(ViewBuffer::QtPaintEngineBacking);
    layered->update();
    EXPECT_TRUE(sameAs(frame()));
}

TEST_F(DisplayDeviceGLTest, AnOpaqueScreenLayerShowsTheSamePixels)
{
    // A screen painted in full may drop its layer's alpha; translucent and smoothed
    // content on it must come out exactly as before.
    DisplayDevice& device = open();
    add(device.views(), "back", QColor(30, 60, 90), QRect(0, 0, 64, 48));
    add(device.views(), "half", QColor(255, 0, 0, 128), QRect(8, 8, 20, 20));
    auto* ring = new RingView(device.views(), "ring");
    ring->moveTo(16, 0);
    ring->resizeTo(48, 48);
    add(device.views(), "turned", QColor(0, 255, 0, 200), QRect(40, 20, 16, 16), true)->setAngle(30);
    const QImage translucent = frame();
    device.setLayerBackingType(ViewBuffer::OpaqueBacking);
    device.markDirtyRectsForRendering(true, true);
    EXPECT_EQ(frame(), translucent);
}

TEST_F(DisplayDeviceGLTest, LaterWindowsDrawWhatTheFirstDrew)
{
    // Each window's context dies with it: what the shared atlases held there must
    // not be sampled by the windows that follow.
    QImage first;
    for (int window = 0; window < 3; ++window) {
        DisplayDevice& device = open();
        auto* ring = new RingView(device.views(), "ring");
        ring->resizeTo(48, 48);
        const QImage image = frame();
        mDevice.reset();
        if (window == 0) {
            first = image;
            // The ring is hollow, its stroke antialiased.
            EXPECT_EQ(at(image, 24, 24), kBlack);
            EXPECT_EQ(at(image, 24, 6), qRgb(96, 160, 255));
            continue;
        }
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 48; ++x)
                ASSERT_EQ(at(image, x, y), at(first, x, y)) << "window " << window << " at " << x << "," << y;
    }
}

TEST_F(DisplayDeviceGLTest, AFullTextureCacheThatKeepsDroppingTexturesIsReported)
{
    DisplayDevice& device = open();
    auto* view = new FreshPictureView(device.views(), "fresh");
    view->resizeTo(32, 32);
    gfx::TextureCache* cache = gfx::TextureCache::instance();
    cache->setMaxSizeMb(24);
    const QString warning =
        QStringLiteral("TextureCache is maxed out and thrashing.  UI Performance Limited.");
    LogCapture log;
    // 4 MB a frame: filling the budget alone is no thrashing.
    for (int frame = 0; frame < 5; ++frame) {
        view->update();
        device.doTick();
    }
    EXPECT_EQ(log.count(warning), 0);
    for (int frame = 0; frame < 4; ++frame) {
        view->update();
        device.doTick();
    }
    EXPECT_GE(log.count(warning), 2);
    device.makeCurrent();
    cache->clear();
    cache->destroyExpiredTextures();
}

TEST_F(DisplayDeviceGLTest, ATextureBudgetChangedAtRunTimeEvictsAtOnceAndFreesAtTheFrameEnd)
{
    DisplayDevice& device = open();
    auto* view = new FreshPictureView(device.views(), "fresh");
    view->resizeTo(32, 32);
    gfx::TextureCache* cache = gfx::TextureCache::instance();
    constexpr quint64 kMB = 1048576;
    cache->setMaxSizeMb(0);
    for (int frame = 0; frame < 6; ++frame) {
        view->update();
        device.doTick();
    }
    ASSERT_EQ(cache->currentSize(), 24 * kMB);
    const quint64 live = gfx::GLUtils::trackedTextureBytes();

    LogCapture log;
    device.changeTextureCacheSize(-1);
    EXPECT_EQ(log.assertions(), QStringList({"The texture cache size cannot be negative: -1"}));
    EXPECT_EQ(cache->maxSize(), 0u);
    device.changeTextureCacheSize(9);
    EXPECT_EQ(cache->maxSize(), 9 * kMB);
    EXPECT_EQ(cache->currentSize(), 8 * kMB);
    EXPECT_TRUE(log.contains("setting texture cache to 9216"));
    // The evicted textures are deleted between frames, not while one is drawn.
    EXPECT_EQ(gfx::GLUtils::trackedTextureBytes(), live);
    device.doTick();
    EXPECT_EQ(gfx::GLUtils::trackedTextureBytes(), live - 16 * kMB);

    device.changeTextureCacheSize(gfx::TextureCacheSize.value());
    device.makeCurrent();
    cache->clear();
    cache->destroyExpiredTextures();
}

TEST_F(DisplayDeviceGLTest, ScreenshotsOfAPartAreCutFromTheFrame)
{
    DisplayDevice& device = open();
    auto* view = add(device.views(), "view", Qt::red, QRect(10, 10, 4, 4));
    const QString path = mDir.filePath(QStringLiteral("part.png"));
    device.screenshot(8, 8, 8, 8, path);
    device.doTick();
    QThreadPool::globalInstance()->waitForDone();
    const QImage part(path);
    ASSERT_EQ(part.size(), QSize(8, 8));
    EXPECT_EQ(at(part, 2, 2), kRed);
    EXPECT_EQ(at(part, 1, 1), kBlack);

    LogCapture log;
    device.screenshot(100, 100, 4, 4, path);
    EXPECT_EQ(log.assertions(), QStringList{QStringLiteral("Screenshot of an empty area or to no file")});
}

TEST_F(DisplayDeviceGLTest, AnXPointerPressShowsInTheFrameOfTheTickThatProcessesIt)
{
    const QString xdotool = QStandardPaths::findExecutable(QStringLiteral("xdotool"));
    if (xdotool.isEmpty())
        GTEST_SKIP() << "xdotool is not installed";
    // The screen's bottom-right corner, where no other test's window goes,
    // whatever size the X server was started with.
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    DisplayDevice& device = open(64, 48, screen.bottomRight() - QPoint(64 + 16, 48 + 16));
    auto* button = add<TouchColorView>(device.views(), "button", Qt::red, QRect(20, 10, 20, 20));
    device.doTick();
    PressWatcher watcher;
    device.widget()->installEventFilter(&watcher);

    const QPoint target = device.widget()->mapToGlobal(QPoint(30, 20));
    ASSERT_EQ(QProcess::execute(xdotool, {"mousemove", "--sync", QString::number(target.x()),
                                          QString::number(target.y()), "mousedown", "1"}),
              0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return watcher.pressed; }, 5000));
    // Queued only: nothing has reached the view before the tick.
    EXPECT_EQ(button->color, QColor(Qt::red));
    EXPECT_EQ(at(frame(), 30, 20), kGreen);
    QProcess::execute(xdotool, {"mouseup", "1"});
}

} // namespace
