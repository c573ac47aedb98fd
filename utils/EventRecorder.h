#pragma once

#include "OrbisUtilsExport.h"

#include <QString>
#include <QVector>
#include <atomic>
#include <mutex>

/// A bounded record of named marks (the frame loop brackets each tick with
/// "tick" begin and end marks) for diagnosing stalls after the fact. Recording
/// is off until enabled, so the marks cost one flag test in production.
class ORBIS_UTILS_EXPORT EventRecorder
{
public:
    enum Phase
    {
        Begin,
        End,
        Instant
    };

    /// One recorded mark.
    struct Event
    {
        QString name;
        Phase phase;
        qint64 timeNs;
    };

    static EventRecorder& instance();

    void setEnabled(bool enabled);
    bool isEnabled() const { return mEnabled; }
    void setCapacity(int capacity);

    void mark(const QString& name, Phase phase = Instant);
    QVector<Event> events() const; ///< oldest first
    void clear();

private:
    mutable std::mutex mMutex;
    std::atomic<bool> mEnabled{false};
    int mCapacity = 4096;
    int mNext = 0;
    QVector<Event> mRing;
};
