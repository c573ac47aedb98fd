#include "EventRecorder.h"

#include "Clock.h"

EventRecorder& EventRecorder::instance()
{
    static EventRecorder recorder;
    return recorder;
}

void EventRecorder::setEnabled(bool enabled)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mEnabled = enabled;
}

void EventRecorder::setCapacity(int capacity)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mCapacity = qMax(1, capacity);
    mRing.clear();
    mNext = 0;
}

void EventRecorder::mark(const QString& name, Phase phase)
{
    if (!mEnabled)
        return;
    const Event e{name, phase, Clock::current()->nowNanoseconds()};
    std::lock_guard<std::mutex> lock(mMutex);
    if (mRing.size() < mCapacity) {
        mRing.append(e);
    } else {
        mRing[mNext] = e;
        mNext = (mNext + 1) % mCapacity;
    }
}

QVector<EventRecorder::Event> EventRecorder::events() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    if (mRing.size() < mCapacity)
        return mRing;
    QVector<Event> ordered;
    ordered.reserve(mRing.size());
    for (int i = 0; i < mRing.size(); ++i)
        ordered.append(mRing.at((mNext + i) % mRing.size()));
    return ordered;
}

void EventRecorder::clear()
{
    std::lock_guard<std::mutex> lock(mMutex);
    mRing.clear();
    mNext = 0;
}
