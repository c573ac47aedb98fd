#include "DrawingContext.h"

#include "Graphics.h"
#include "TransformFreeContext.h"

#include <cmath>

DrawingContext::DrawingContext(QPainter& painter)
    : mPainter(painter),
      mAligned(Graphics::painterLayoutScale(painter) != 1.0 && !Graphics::isPainterRotated(painter))
{}

void DrawingContext::save()
{
    mPainter.save();
}

void DrawingContext::restore()
{
    mPainter.restore();
}

void DrawingContext::saveTransform()
{
    mMatrix = mPainter.worldMatrix();
}

void DrawingContext::restoreTransform()
{
    mPainter.setWorldMatrix(mMatrix);
}

void DrawingContext::translate(const QPoint& offset)
{
    mPainter.translate(QPointF(offset));
}

QRect DrawingContext::alignedRect(const QRect& rect, const QMatrix& matrix)
{
    const QRectF mapped = matrix.mapRect(QRectF(rect.x(), rect.y(), rect.width(), rect.height()));
    return QRect(
        QPoint(int(std::ceil(mapped.x())), int(std::ceil(mapped.y()))),
        QPoint(int(std::ceil(mapped.x() + mapped.width())), int(std::ceil(mapped.y() + mapped.height()))));
}

void DrawingContext::setClipRect(const QRect& rect)
{
    if (!mAligned) {
        mPainter.setClipRect(rect, Qt::ReplaceClip);
        return;
    }
    TransformFreeContext context(mPainter);
    context.apply();
    mPainter.setClipRect(alignedRect(rect, context.matrix()), Qt::ReplaceClip);
    context.restore();
}

void DrawingContext::fillRect(const QRect& rect, const QBrush& brush)
{
    if (!mAligned) {
        mPainter.fillRect(rect, brush);
        return;
    }
    TransformFreeContext context(mPainter);
    context.apply();
    mPainter.fillRect(alignedRect(rect, context.matrix()), brush);
    context.restore();
}

void DrawingContext::drawPixmap(const QRect& rect, const QPixmap& pixmap)
{
    if (!mAligned) {
        mPainter.drawPixmap(QRectF(rect.x(), rect.y(), rect.width(), rect.height()), pixmap,
                            QRectF(pixmap.rect()));
        return;
    }
    TransformFreeContext context(mPainter);
    context.apply();
    mPainter.drawPixmap(context.transformedRect(rect).topLeft(), pixmap);
    context.restore();
}
