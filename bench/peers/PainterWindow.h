#pragma once

#include <QFont>
#include <QOpenGLWindow>

class PeerFrameClock;

// The scroll scene painted with QPainter on Qt's OpenGL 2 paint engine, the whole
// window every frame, the way a hand-written list draws: only the rows in view.
class PainterWindow : public QOpenGLWindow
{
    Q_OBJECT

public:
    PainterWindow(PeerFrameClock* clock, bool idle, const QString& screenshot);

protected:
    bool event(QEvent* event) override;
    void paintGL() override;

private slots:
    void swapped();

private:
    void paintRow(QPainter& painter, int row, double y);

    PeerFrameClock* mClock;
    bool mIdle;
    QString mScreenshot;
    double mOffset = 0;
    double mAngle = 0;
    QFont mHeaderFont;
    QFont mTrackFont;
    QFont mArtistFont;
    QFont mNowPlayingFont;
};
