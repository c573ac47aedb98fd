#include "Graphics.h"
#include "DrawingContext.h"
#include "TransformFreeContext.h"

#include <QImage>
#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>

namespace {
// A painter on a cleared image that forgets its layout scale when it goes.
struct Canvas
{
    explicit Canvas(int size = 20) : image(size, size, QImage::Format_ARGB32_Premultiplied)
    {
        image.fill(Qt::transparent);
        painter.begin(&image);
    }
    ~Canvas()
    {
        Graphics::removePainterLayoutScale(painter);
        painter.end();
    }
    bool filled(int x, int y) { return qAlpha(image.pixel(x, y)) != 0; }

    QImage image;
    QPainter painter;
};
} // namespace

TEST(Graphics, ScaledRectsTruncateOrRoundOutward)
{
    const QRect r(1, 1, 3, 3);
    EXPECT_EQ(Graphics::scaledRect(r, 1.5), QRect(1, 1, 4, 4));
    EXPECT_EQ(Graphics::roundedScaledRect(r, 1.5), QRect(1, 1, 5, 5));
    EXPECT_EQ(Graphics::scaledRect(QRect(-3, -3, 3, 3), 1.5), QRect(-4, -4, 4, 4)); // toward zero
    EXPECT_EQ(Graphics::roundedScaledRect(QRect(-3, -3, 3, 3), 1.5), QRect(-5, -5, 5, 5));
    EXPECT_EQ(Graphics::scaledRect(r, 1.0), r);
    EXPECT_EQ(Graphics::roundedScaledRect(r, 1.0), r);
}

TEST(Graphics, LayoutScaleIsPerPainterAndRotationIncludesMirroring)
{
    Canvas a, b;
    EXPECT_EQ(Graphics::painterLayoutScale(a.painter), 1.0);
    Graphics::setPainterLayoutScale(a.painter, 2.0);
    EXPECT_EQ(Graphics::painterLayoutScale(a.painter), 2.0);
    EXPECT_EQ(Graphics::painterLayoutScale(b.painter), 1.0);
    Graphics::removePainterLayoutScale(a.painter);
    EXPECT_EQ(Graphics::painterLayoutScale(a.painter), 1.0);

    EXPECT_FALSE(Graphics::isPainterRotated(a.painter));
    EXPECT_FALSE(Graphics::isPainterScaled(a.painter));
    a.painter.scale(2, 2);
    EXPECT_FALSE(Graphics::isPainterRotated(a.painter));
    EXPECT_TRUE(Graphics::isPainterScaled(a.painter));
    a.painter.resetTransform();
    a.painter.scale(-1, 1);
    EXPECT_TRUE(Graphics::isPainterRotated(a.painter));
    a.painter.resetTransform();
    a.painter.scale(1, -1);
    EXPECT_TRUE(Graphics::isPainterRotated(a.painter));
    a.painter.resetTransform();
    a.painter.rotate(90);
    EXPECT_TRUE(Graphics::isPainterRotated(a.painter));
}

TEST(TransformFreeContext, DropsToDevicePixelsOnlyForScaledUnrotatedPainters)
{
    Canvas plain;
    plain.painter.scale(2, 2);
    TransformFreeContext inactive(plain.painter);
    inactive.apply();
    EXPECT_TRUE(Graphics::isPainterScaled(plain.painter)); // no layout scale: left alone
    EXPECT_EQ(inactive.transformedRect(QRect(1, 1, 2, 2)), QRect(1, 1, 2, 2));

    Canvas scaled;
    Graphics::setPainterLayoutScale(scaled.painter, 2.0);
    scaled.painter.scale(2, 2);
    TransformFreeContext context(scaled.painter);
    context.apply();
    EXPECT_FALSE(Graphics::isPainterScaled(scaled.painter));
    EXPECT_EQ(context.transformedRect(QRect(1, 1, 2, 2)), QRect(2, 2, 4, 4));
    context.restore();
    EXPECT_EQ(scaled.painter.worldTransform(), QTransform::fromScale(2, 2));

    Canvas nan;
    Graphics::setPainterLayoutScale(nan.painter, std::nan(""));
    EXPECT_TRUE(TransformFreeContext(nan.painter).isActive());

    // A rotated painter keeps its matrix through apply and restore alike.
    Canvas rotated;
    Graphics::setPainterLayoutScale(rotated.painter, 2.0);
    rotated.painter.rotate(90);
    const QTransform before = rotated.painter.worldTransform();
    TransformFreeContext kept(rotated.painter);
    kept.apply();
    kept.restore();
    EXPECT_EQ(rotated.painter.worldTransform(), before);
}

TEST(DrawingContext, AlignedRectIsGenerousByOnePixel)
{
    EXPECT_EQ(DrawingContext::alignedRect(QRect(0, 0, 10, 10), QMatrix()),
              QRect(QPoint(0, 0), QPoint(10, 10)));
    EXPECT_EQ(DrawingContext::alignedRect(QRect(1, 1, 3, 3), QMatrix(1.5, 0, 0, 1.5, 0, 0)),
              QRect(QPoint(2, 2), QPoint(6, 6)));
}

TEST(DrawingContext, ScaledPainterClipsAndBlitsOnWholeDevicePixels)
{
    Canvas canvas;
    Graphics::setPainterLayoutScale(canvas.painter, 1.5);
    canvas.painter.scale(1.5, 1.5);
    DrawingContext context(canvas.painter);
    ASSERT_TRUE(context.isAligned());
    context.setClipRect(QRect(1, 1, 3, 3));
    canvas.painter.fillRect(QRect(0, 0, 20, 20), Qt::red);
    canvas.painter.setClipping(false);
    // Device pixels 2..6 inclusive, the last one being the generous extra pixel.
    EXPECT_FALSE(canvas.filled(1, 1));
    EXPECT_TRUE(canvas.filled(2, 2));
    EXPECT_TRUE(canvas.filled(6, 6));
    EXPECT_FALSE(canvas.filled(7, 7));

    // A pixmap lands at the mapped corner at its own size, not resampled.
    Canvas blit;
    Graphics::setPainterLayoutScale(blit.painter, 2.0);
    blit.painter.scale(2, 2);
    QPixmap pixmap(3, 3);
    pixmap.fill(Qt::blue);
    DrawingContext(blit.painter).drawPixmap(QRect(1, 1, 2, 2), pixmap);
    EXPECT_FALSE(blit.filled(1, 1));
    EXPECT_TRUE(blit.filled(2, 2));
    EXPECT_TRUE(blit.filled(4, 4));
    EXPECT_FALSE(blit.filled(5, 5));
}

TEST(DrawingContext, PlainPathWithoutLayoutScaleOrWhenMirrored)
{
    Canvas canvas;
    canvas.painter.scale(2, 2);
    DrawingContext plain(canvas.painter);
    EXPECT_FALSE(plain.isAligned());
    QPixmap pixmap(3, 3);
    pixmap.fill(Qt::blue);
    plain.drawPixmap(QRect(1, 1, 2, 2), pixmap); // stretched into the rect: device 2..5
    EXPECT_TRUE(canvas.filled(5, 5));
    EXPECT_FALSE(canvas.filled(6, 6));

    Canvas mirrored;
    Graphics::setPainterLayoutScale(mirrored.painter, 2.0);
    mirrored.painter.scale(-2, 2);
    EXPECT_FALSE(DrawingContext(mirrored.painter).isAligned());

    Canvas saved;
    DrawingContext context(saved.painter);
    context.saveTransform();
    context.translate(QPoint(5, 7));
    EXPECT_EQ(saved.painter.worldTransform(), QTransform::fromTranslate(5, 7));
    context.restoreTransform();
    EXPECT_TRUE(saved.painter.worldTransform().isIdentity());
}

TEST(Graphics, ImageFitting)
{
    const QRect box(0, 0, 100, 50);
    EXPECT_EQ(Graphics::fitImageToRect(QSize(20, 20), box, Graphics::Stretch), box);
    EXPECT_EQ(Graphics::fitImageToRect(QSize(20, 20), box, Graphics::FitInside), QRect(25, 0, 50, 50));
    EXPECT_EQ(Graphics::fitImageToRect(QSize(20, 20), box, Graphics::Cover), QRect(0, -25, 100, 100));
    EXPECT_EQ(Graphics::fitImageToRect(QSize(20, 20), box, Graphics::Center), QRect(40, 15, 20, 20));

    QImage source(2, 1, QImage::Format_ARGB32);
    source.setPixel(0, 0, qRgb(255, 0, 0));
    source.setPixel(1, 0, qRgb(0, 0, 255));
    const QImage mirrored = Graphics::reflect(QPixmap::fromImage(source), true).toImage();
    EXPECT_EQ(QColor(mirrored.pixel(0, 0)), QColor(Qt::blue));
    EXPECT_EQ(Graphics::rotate(QPixmap::fromImage(source), 90).size(), QSize(1, 2));
}
