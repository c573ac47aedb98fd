#include "SingleShotTimer.h"

#include "Clock.h"

#include <QList>

namespace {
QList<SingleShotTimer*>& running()
{
    static QList<SingleShotTimer*> timers;
    return timers;
}
} // namespace

SingleShotTimer::SingleShotTimer(QObject* parent) : QObject(parent) {}

SingleShotTimer::~SingleShotTimer()
{
    stop();
}

void SingleShotTimer::start(int ms)
{
    if (!isActive())
        running().append(this);
    mDeadlineNs = Clock::current()->nowNanoseconds() + qint64(qMax(0, ms)) * 1000000;
}

void SingleShotTimer::stop()
{
    if (!isActive())
        return;
    mDeadlineNs = -1;
    running().removeOne(this);
}

qint64 SingleShotTimer::remainingTime() const
{
    if (!isActive())
        return -1;
    return qMax<qint64>(0, (mDeadlineNs - Clock::current()->nowNanoseconds()) / 1000000);
}

void SingleShotTimer::fireExpired()
{
    if (running().isEmpty())
        return;
    const qint64 now = Clock::current()->nowNanoseconds();
    // A timeout may stop, restart or delete other timers: each is looked up again.
    const QList<SingleShotTimer*> due = running();
    for (SingleShotTimer* timer : due) {
        if (!running().contains(timer) || timer->mDeadlineNs > now)
            continue;
        timer->stop();
        emit timer->timeout();
    }
}

int SingleShotTimer::activeCount()
{
    return running().size();
}
