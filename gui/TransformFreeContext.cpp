#include "TransformFreeContext.h"

#include "Graphics.h"

TransformFreeContext::TransformFreeContext(QPainter& painter)
    : mPainter(painter), mActive(!(Graphics::painterLayoutScale(painter) == 1.0))
{}

void TransformFreeContext::apply()
{
    if (!mActive || Graphics::isPainterRotated(mPainter))
        return;
    mMatrix = mPainter.worldMatrix();
    mPainter.setWorldMatrix(QMatrix());
    mApplied = true;
}

void TransformFreeContext::restore()
{
    // Only a matrix that was taken away is given back: a rotated painter keeps its own.
    if (!mApplied)
        return;
    mPainter.setWorldMatrix(mMatrix);
    mApplied = false;
}

QRect TransformFreeContext::transformedRect(const QRect& rect) const
{
    return mActive ? mMatrix.mapRect(rect) : rect;
}
