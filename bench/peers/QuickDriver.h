#pragma once

#include <QObject>

class PeerFrameClock;
class QQuickItem;
class QQuickView;

// Drives the Qt Quick scene one frame after another: at the start of each frame's
// work (the window's update request, or its first exposure) it moves the list and
// turns the ring; when the swap returns it asks for the next frame.
class QuickDriver : public QObject
{
    Q_OBJECT

public:
    QuickDriver(QQuickView* view, PeerFrameClock* clock, bool idle, const QString& screenshot);
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void swapped();

private:
    QQuickView* mView;
    PeerFrameClock* mClock;
    bool mIdle;
    QString mScreenshot;
    QQuickItem* mList = nullptr;
    QQuickItem* mRing = nullptr;
};
