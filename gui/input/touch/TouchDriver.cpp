#include "TouchDriver.h"

#include "Clock.h"

#include <QDeadlineTimer>
#include <QMutexLocker>

void TouchDriver::queueEvent(int id, bool down, int x, int y)
{
    queueEvent(id, down, x, y, Clock::current()->nowMilliseconds());
}

void TouchDriver::queueEvent(int id, bool down, int x, int y, qint64 timeMs)
{
    TouchEvent event;
    event.id = id;
    event.point = QPoint(x, y);
    event.timeMs = timeMs;
    QMutexLocker lock(&mMutex);
    if (down) {
        event.state = mDown.contains(id) ? TouchMoved : TouchTouched;
        mDown.insert(id);
    } else {
        if (!mDown.remove(id))
            return;
        event.state = TouchReleased;
    }
    mQueue.append(event);
    mQueued.wakeAll();
}

QVector<TouchEvent> TouchDriver::getEvents()
{
    QVector<TouchEvent> events;
    QMutexLocker lock(&mMutex);
    events.swap(mQueue);
    return events;
}

bool TouchDriver::hasEvents() const
{
    QMutexLocker lock(&mMutex);
    return !mQueue.isEmpty();
}

bool TouchDriver::waitForEvents(int count, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    QMutexLocker lock(&mMutex);
    while (mQueue.size() < count) {
        if (!mQueued.wait(&mMutex, deadline))
            return mQueue.size() >= count;
    }
    return true;
}

void TouchDriver::setSize(const QSize& size)
{
    QMutexLocker lock(&mMutex);
    mSize = size;
}

QSize TouchDriver::size() const
{
    QMutexLocker lock(&mMutex);
    return mSize;
}
