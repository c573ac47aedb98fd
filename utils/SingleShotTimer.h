#pragma once

#include "OrbisUtilsExport.h"

#include <QObject>

/// A timeout on the framework clock for the user interface: it fires from the frame
/// loop, at the first frame at or after its deadline, so it keeps step with the
/// animations of that frame and with a test's manual clock. GUI thread only.
class ORBIS_UTILS_EXPORT SingleShotTimer : public QObject
{
    Q_OBJECT

public:
    explicit SingleShotTimer(QObject* parent = nullptr);
    ~SingleShotTimer() override;

    /// (Re)starts the countdown; a negative time counts as 0.
    void start(int ms);
    void stop();
    bool isActive() const { return mDeadlineNs >= 0; }
    /// Milliseconds left, 0 once due; -1 when the timer does not run.
    qint64 remainingTime() const;

    /// Fires every timer that is due; each frame of a display calls it once.
    static void fireExpired();
    static int activeCount();

signals:
    void timeout();

private:
    qint64 mDeadlineNs = -1;
};
