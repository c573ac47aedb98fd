#include "TouchVelocity.h"

void TouchVelocity::addSample(qint64 timeMs, const QPointF& point)
{
    mSamples.append({timeMs, point});
    int stale = 0;
    while (stale < mSamples.size() && timeMs - mSamples[stale].timeMs > kWindowMs)
        ++stale;
    mSamples.remove(0, stale);
}

QPointF TouchVelocity::velocity() const
{
    const int n = mSamples.size();
    if (n < 2)
        return QPointF();
    // Times relative to the newest sample keep the sums small and exact.
    const qint64 origin = mSamples.last().timeMs;
    double meanT = 0;
    QPointF mean;
    for (const Sample& s : mSamples) {
        meanT += double(s.timeMs - origin);
        mean += s.point;
    }
    meanT /= n;
    mean /= n;
    double varT = 0;
    QPointF cov;
    for (const Sample& s : mSamples) {
        const double dt = double(s.timeMs - origin) - meanT;
        varT += dt * dt;
        cov += dt * (s.point - mean);
    }
    if (varT == 0)
        return QPointF();
    return cov / varT;
}
