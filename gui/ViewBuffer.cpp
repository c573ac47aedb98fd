#include "ViewBuffer.h"

void ViewBuffer::update(const QRect& rect)
{
    if (!rect.isEmpty())
        mDirty += rect;
}

QRegion ViewBuffer::takeDirtyRegion()
{
    QRegion taken;
    taken.swap(mDirty);
    return taken;
}
