#include "PainterWindow.h"

#include "PeerFrameClock.h"
#include "PeerScene.h"

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

using namespace PeerScene;

namespace {

QFont font(int pixelSize)
{
    QFont f(QStringLiteral("DejaVu Sans"));
    f.setPixelSize(pixelSize);
    return f;
}

} // namespace

PainterWindow::PainterWindow(PeerFrameClock* clock, bool idle, const QString& screenshot)
    : mClock(clock), mIdle(idle), mScreenshot(screenshot), mHeaderFont(font(32)), mTrackFont(font(22)),
      mArtistFont(font(16)), mNowPlayingFont(font(28))
{
    resize(kWidth, kHeight);
    connect(this, &QOpenGLWindow::frameSwapped, this, &PainterWindow::swapped);
}

bool PainterWindow::event(QEvent* event)
{
    if ((event->type() == QEvent::UpdateRequest || event->type() == QEvent::Expose) && !mClock->inFrame()) {
        mClock->frameStarted();
        if (!mIdle) {
            mOffset = scrollOffset(mClock->sceneSeconds());
            mAngle = ringAngle(mClock->sceneSeconds());
        }
    }
    return QOpenGLWindow::event(event);
}

void PainterWindow::paintRow(QPainter& painter, int row, double y)
{
    painter.fillRect(QRectF(0, y, kListWidth, kRowHeight), row % 2 ? kRowOdd : kRowEven);
    painter.setOpacity(kArtOpacity);
    painter.setBrush(kArt);
    painter.drawRoundedRect(QRectF(12, y + 8, 48, 48), 8, 8);
    painter.setOpacity(1);
    painter.setFont(mTrackFont);
    painter.setPen(kTitle);
    painter.drawText(QRectF(76, y + 10, 700, 26), Qt::AlignLeft | Qt::AlignTop, trackText(row));
    painter.setFont(mArtistFont);
    painter.setPen(kArtist);
    painter.drawText(QRectF(76, y + 38, 700, 20), Qt::AlignLeft | Qt::AlignTop, artistText(row));
    painter.fillRect(QRectF(0, y + kRowHeight - 1, kListWidth, 1), kDivider);
}

void PainterWindow::paintGL()
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRect(0, 0, kWidth, kHeight), kBackground);
    painter.fillRect(QRect(0, 0, kWidth, kHeaderHeight), kHeader);
    painter.setFont(mHeaderFont);
    painter.setPen(kTitle);
    painter.drawText(QRectF(24, 0, 400, kHeaderHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("Media"));

    painter.save();
    painter.setClipRect(QRect(0, kHeaderHeight, kListWidth, kListHeight));
    painter.setPen(Qt::NoPen);
    const int first = int(mOffset) / kRowHeight;
    for (int row = first; row < kRows; ++row) {
        const double y = kHeaderHeight + row * kRowHeight - mOffset;
        if (y >= kHeaderHeight + kListHeight)
            break;
        painter.setPen(Qt::NoPen);
        paintRow(painter, row, y);
    }
    painter.restore();

    painter.setPen(Qt::NoPen);
    painter.setBrush(kHeader);
    painter.drawRoundedRect(QRectF(820, 100, 440, 600), 12, 12);
    painter.save();
    painter.translate(820 + 120 + kRingSize / 2.0, 100 + 120 + kRingSize / 2.0);
    painter.rotate(mAngle);
    paintRing(painter, QRectF(-kRingSize / 2.0, -kRingSize / 2.0, kRingSize, kRingSize));
    painter.restore();
    painter.setFont(mNowPlayingFont);
    painter.setPen(kTitle);
    painter.drawText(QRectF(860, 500, 400, 40), Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Now playing"));
}

void PainterWindow::swapped()
{
    if (!mClock->frameSwapped()) {
        update();
        return;
    }
    if (!mScreenshot.isEmpty())
        grabFramebuffer().save(mScreenshot);
    QCoreApplication::exit(0);
}
