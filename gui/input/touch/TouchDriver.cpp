#include "TouchDriver.h"

#include "Clock.h"

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
    std::lock_guard<std::mutex> lock(mMutex);
    if (down) {
        event.state = mDown.contains(id) ? TouchMoved : TouchTouched;
        mDown.insert(id);
    } else {
        if (!mDown.remove(id))
            return;
        event.state = TouchReleased;
    }
    mQueue.append(event);
    mQueued.notify_all();
}

QVector<TouchEvent> TouchDriver::getEvents()
{
    QVector<TouchEvent> events;
    std::lock_guard<std::mutex> lock(mMutex);
    events.swap(mQueue);
    return events;
}

bool TouchDriver::hasEvents() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return !mQueue.isEmpty();
}

bool TouchDriver::waitForEvents(int count, int timeoutMs)
{
    std::unique_lock<std::mutex> lock(mMutex);
    return mQueued.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                            [this, count] { return mQueue.size() >= count; });
}

void TouchDriver::setSize(const QSize& size)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mSize = size;
}

QSize TouchDriver::size() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mSize;
}
