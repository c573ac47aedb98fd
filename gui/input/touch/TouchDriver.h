#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TouchEvent.h"

#include <QSet>
#include <QSize>
#include <QVector>
#include <condition_variable>
#include <mutex>

/// Source of raw touches. Drivers may queue from any thread; the dispatcher takes the
/// whole queue once per frame on the GUI thread.
class ORBIS_UI_EXPORT TouchDriver
{
public:
    virtual ~TouchDriver() = default;

    /// down: the finger is on the glass. The first down of an identifier is a press,
    /// later ones are moves; an up releases it (an up for a finger that is not down is
    /// dropped, so that repeated releases from the controller cannot confuse a view).
    void queueEvent(int id, bool down, int x, int y);
    /// The same, stamped with a time of the framework clock instead of now.
    void queueEvent(int id, bool down, int x, int y, qint64 timeMs);
    /// Called on the GUI thread just before the queue is taken, for drivers that
    /// produce events on the frame's schedule rather than on a thread of their own.
    virtual void queueDueEvents() {}
    /// Hands over everything queued so far, in order, and empties the queue.
    QVector<TouchEvent> getEvents();
    bool hasEvents() const;
    /// Blocks until at least count events are queued or timeoutMs of real time pass;
    /// returns whether they arrived. For callers on other threads than the reader.
    bool waitForEvents(int count, int timeoutMs);

    /// The screen size, for drivers that scale controller coordinates to it.
    void setSize(const QSize& size);
    QSize size() const;

private:
    // Standard primitives rather than Qt's: the thread sanitizer sees their ordering.
    mutable std::mutex mMutex;
    std::condition_variable mQueued;
    QVector<TouchEvent> mQueue;
    QSet<int> mDown;
    QSize mSize;
};
