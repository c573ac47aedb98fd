#include "Graphics.h"

#include <QFontMetrics>
#include <QHash>
#include <QTransform>
#include <cmath>

namespace {
QHash<const QPainter*, double>& layoutScales()
{
    static QHash<const QPainter*, double> scales;
    return scales;
}
} // namespace

double Graphics::painterLayoutScale(const QPainter& painter)
{
    return layoutScales().value(&painter, 1.0);
}

void Graphics::setPainterLayoutScale(const QPainter& painter, double scale)
{
    layoutScales().insert(&painter, scale);
}

void Graphics::removePainterLayoutScale(const QPainter& painter)
{
    layoutScales().remove(&painter);
}

bool Graphics::isPainterRotated(const QPainter& painter)
{
    const QMatrix m = painter.worldMatrix();
    return m.m21() != 0 || m.m12() != 0 || std::isnan(m.m12()) || m.m11() < 0 || m.m22() < 0;
}

bool Graphics::isPainterScaled(const QPainter& painter)
{
    const QMatrix m = painter.worldMatrix();
    return m.m11() != 1 || m.m22() != 1;
}

QRect Graphics::scaledRect(const QRect& rect, double scale)
{
    if (scale == 1.0)
        return rect;
    return QRect(int(rect.left() * scale), int(rect.top() * scale), int(rect.width() * scale),
                 int(rect.height() * scale));
}

QRect Graphics::roundedScaledRect(const QRect& rect, double scale)
{
    if (scale == 1.0)
        return rect;
    return QRect(int(std::floor(rect.left() * scale)), int(std::floor(rect.top() * scale)),
                 int(std::ceil(rect.width() * scale)), int(std::ceil(rect.height() * scale)));
}

void Graphics::drawText(QPainter& painter, const QRect& rect, QString text, int flags, QColor color)
{
    painter.save();
    painter.setPen(color);
    painter.drawText(rect, flags, text);
    painter.restore();
}

void Graphics::drawText(QPainter& painter, const QRect& rect, int flags, const QString& text,
                        const QColor& color, bool elide, bool multiLine, Qt::TextElideMode mode)
{
    QString shown = text;
    if (elide && !multiLine)
        shown = painter.fontMetrics().elidedText(text, mode, rect.width());
    drawText(painter, rect, shown, multiLine ? flags | Qt::TextWordWrap : flags, color);
}

bool Graphics::fitText(QFont& font, const QRect& rect, QString text, int flags, int minPointSize)
{
    for (;;) {
        const QRect needed = QFontMetrics(font).boundingRect(rect, flags, text);
        if (needed.width() <= rect.width() && needed.height() <= rect.height())
            return true;
        if (font.pointSize() <= minPointSize || font.pointSize() <= 1)
            return false;
        font.setPointSize(font.pointSize() - 1);
    }
}

QRect Graphics::fitImageToRect(const QSize& image, const QRect& rect, int fitMode)
{
    if (image.isEmpty() || fitMode == Stretch)
        return rect;
    QSize size = image;
    if (fitMode == FitInside)
        size.scale(rect.size(), Qt::KeepAspectRatio);
    else if (fitMode == Cover)
        size.scale(rect.size(), Qt::KeepAspectRatioByExpanding);
    QRect fitted(QPoint(), size);
    fitted.moveCenter(rect.center());
    return fitted;
}

QPixmap Graphics::scaleImage(const QPixmap& pixmap, const QSize& size, int fitMode)
{
    if (pixmap.isNull() || size.isEmpty())
        return QPixmap();
    const QSize target = fitImageToRect(pixmap.size(), QRect(QPoint(), size), fitMode).size();
    return pixmap.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void Graphics::fitAndDrawImage(QPainter& painter, const QRect& rect, const QPixmap& pixmap, int fitMode)
{
    if (pixmap.isNull())
        return;
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    painter.drawPixmap(fitImageToRect(pixmap.size(), rect, fitMode), pixmap);
    painter.restore();
}

void Graphics::drawPixmap(QPainter& painter, const QRect& target, const QPixmap& pixmap, const QRect& source)
{
    painter.drawPixmap(target, pixmap, source);
}

QPixmap Graphics::reflect(QPixmap pixmap, bool horizontal)
{
    return QPixmap::fromImage(pixmap.toImage().mirrored(horizontal, !horizontal));
}

QPixmap Graphics::rotate(const QPixmap& pixmap, int degrees)
{
    return pixmap.transformed(QTransform().rotate(degrees), Qt::SmoothTransformation);
}
