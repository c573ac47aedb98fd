#pragma once

#include <QRegion>
#include <QSize>

class DisplayView;

// The offscreen buffer of a view that uses a layer. It collects the rectangles that
// must be re-rendered before the buffer is composited; the device renders a dirty
// buffer and takes its region in one step.
class ViewBuffer
{
public:
    enum BackingType
    {
        DefaultBacking = 0,
        OpaqueBacking,      // no alpha channel needed
        MultisampledBacking // smoothed edges for transformed layers
    };

    explicit ViewBuffer(DisplayView* view) : mView(view) {}

    DisplayView* view() const { return mView; }
    // rect is in the view's coordinates.
    void update(const QRect& rect);
    bool isDirty() const { return !mDirty.isEmpty(); }
    const QRegion& dirtyRegion() const { return mDirty; }
    // Returns the dirty region and marks the buffer clean.
    QRegion takeDirtyRegion();

    QSize size() const { return mSize; }
    void setSize(const QSize& size) { mSize = size; }
    BackingType backingType() const { return mBackingType; }
    void setBackingType(BackingType type) { mBackingType = type; }

private:
    DisplayView* mView;
    QRegion mDirty;
    QSize mSize;
    BackingType mBackingType = DefaultBacking;
};
