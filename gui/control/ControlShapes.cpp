#include "ControlShapes.h"

#include "Skin.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>

namespace {
// Pixels only: a texture key kept here would outlive the GL context that uploaded
// it. Pictures made from the same QImage find its texture in the cache.
QHash<QString, QImage>& cache()
{
    static QHash<QString, QImage> shapes;
    return shapes;
}

QString colorKey(const QColor& color)
{
    return color.isValid() ? QString::number(color.rgba(), 16) : QStringLiteral("-");
}
} // namespace

DisplayImage ControlShapes::roundedRect(int radius, const QColor& fill, const QColor& stroke, int strokeWidth)
{
    radius = qMax(0, radius);
    strokeWidth = stroke.isValid() ? qMax(0, strokeWidth) : 0;
    const QString key =
        QStringLiteral("r%1 %2 %3 %4").arg(radius).arg(colorKey(fill), colorKey(stroke)).arg(strokeWidth);
    QImage pixels = cache().value(key);
    if (pixels.isNull()) {
        pixels = roundedRectPixels(radius, fill, stroke, strokeWidth);
        cache().insert(key, pixels);
    }
    DisplayImage image(pixels);
    const int cut = qMax(radius, strokeWidth);
    image.setCuts(QMargins(cut, cut, cut, cut));
    return image;
}

QImage ControlShapes::roundedRectPixels(int radius, const QColor& fill, const QColor& stroke, int strokeWidth)
{
    // Two pixels of plain middle between the corners, so that stretching samples
    // nothing of the edges.
    const int side = 2 * qMax(radius, strokeWidth) + 2;
    QImage pixels(side, side, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outer;
    outer.addRoundedRect(QRectF(0, 0, side, side), radius, radius);
    if (strokeWidth > 0) {
        painter.fillPath(outer, stroke);
        QPainterPath inner;
        const qreal innerRadius = qMax(0, radius - strokeWidth);
        inner.addRoundedRect(QRectF(strokeWidth, strokeWidth, side - 2 * strokeWidth, side - 2 * strokeWidth),
                             innerRadius, innerRadius);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillPath(inner, fill.isValid() ? fill : QColor(Qt::transparent));
    } else if (fill.isValid()) {
        painter.fillPath(outer, fill);
    }
    painter.end();
    return pixels;
}

DisplayImage ControlShapes::knob(int diameter, const QColor& fill, const QColor& shadow)
{
    diameter = qMax(1, diameter);
    const QString key = QStringLiteral("k%1 %2 %3").arg(diameter).arg(colorKey(fill), colorKey(shadow));
    QImage pixels = cache().value(key);
    if (pixels.isNull()) {
        pixels = knobPixels(diameter, fill, shadow);
        cache().insert(key, pixels);
    }
    DisplayImage image(pixels);
    image.setFill(DisplayImage::Center);
    return image;
}

QImage ControlShapes::knobPixels(int diameter, const QColor& fill, const QColor& shadow)
{
    const int margin = shadowMargin();
    const int side = diameter + 2 * margin;
    QImage pixels(side, side, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    {
        QPainter painter(&pixels);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        if (shadow.isValid()) {
            // Rings fading outwards, one pixel lower than the disc: a soft drop shadow
            // without a blur pass.
            for (int ring = margin; ring > 0; --ring) {
                QColor step = shadow;
                step.setAlphaF(shadow.alphaF() * (margin - ring + 1) / (margin + 1) / 2);
                painter.setBrush(step);
                painter.drawEllipse(
                    QRectF(margin - ring, margin - ring + 1, diameter + 2 * ring, diameter + 2 * ring));
            }
        }
        painter.setBrush(fill);
        painter.drawEllipse(QRectF(margin, margin, diameter, diameter));
    }
    return pixels;
}

DisplayImage ControlShapes::tinted(const DisplayImage& image, const QColor& color)
{
    if (!color.isValid() || !image.isMonochrome())
        return image;
    const QImage source = image.image();
    const QString key =
        QStringLiteral("t%1 %2 %3")
            .arg(image.fileName().isEmpty() ? QString::number(source.cacheKey()) : image.fileName())
            .arg(colorKey(color))
            .arg(source.width());
    QImage pixels = cache().value(key);
    if (pixels.isNull()) {
        pixels = QImage(source.size(), QImage::Format_ARGB32_Premultiplied);
        pixels.fill(Qt::transparent);
        QPainter painter(&pixels);
        painter.drawImage(0, 0, source);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixels.rect(), color);
        painter.end();
        cache().insert(key, pixels);
    }
    DisplayImage recoloured(pixels);
    recoloured.setCuts(image.cuts());
    recoloured.setFill(image.fill());
    return recoloured;
}

void ControlShapes::drawKnob(QPainter& painter, const QPointF& center, int diameter, bool pressed)
{
    const QPoint at = center.toPoint();
    if (pressed) {
        QColor halo = Skin::parseColor(QStringLiteral("accentColor")).color();
        halo.setAlpha(72);
        const int size = diameter + 16;
        knob(size, halo, QColor()).draw(painter, QRect(at.x() - size / 2, at.y() - size / 2, size, size));
    }
    const DisplayImage disc = knob(diameter, Skin::parseColor(QStringLiteral("knobColor")).color(),
                                   Skin::parseColor(QStringLiteral("shadowColor")).color());
    disc.draw(painter, QRect(at.x() - diameter / 2, at.y() - diameter / 2, diameter, diameter));
}

void ControlShapes::clear()
{
    cache().clear();
}

int ControlShapes::cachedCount()
{
    return cache().size();
}
