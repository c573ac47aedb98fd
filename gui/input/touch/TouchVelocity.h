#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QPointF>
#include <QVector>

/// Velocity of one finger from its recent positions. Controllers report at uneven
/// intervals and jitter by a pixel or two, so the estimate is the slope of a
/// least-squares line through every sample of the last window, per axis, rather than
/// the difference of the last two points.
class ORBIS_UI_EXPORT TouchVelocity
{
public:
    static constexpr qint64 kWindowMs = 100;

    void addSample(qint64 timeMs, const QPointF& point);
    void clear() { mSamples.clear(); }
    /// Pixels per millisecond; zero with fewer than two distinct sample times.
    QPointF velocity() const;
    int sampleCount() const { return mSamples.size(); }

private:
    struct Sample
    {
        qint64 timeMs;
        QPointF point;
    };
    QVector<Sample> mSamples;
};
