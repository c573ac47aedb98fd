#include "SpinnerView.h"

#include <QVector3D>
#include <cmath>

SpinnerView::SpinnerView(DisplayView* parent, const char* name, const QColor& color, double degreesPerFrame)
    : DisplayView(parent, name), mColor(color), mStep(degreesPerFrame)
{
    setUseLayer(true);
}

void SpinnerView::draw(QPainter& painter)
{
    if (mRing.size() != size()) {
        QImage image(size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter ring(&image);
        ring.setRenderHint(QPainter::Antialiasing);
        const qreal pen = width() / 10.0;
        const QRectF bounds = QRectF(0, 0, width(), height()).adjusted(pen, pen, -pen, -pen);
        QColor track = mColor;
        track.setAlphaF(0.25);
        ring.setPen(QPen(track, pen));
        ring.drawEllipse(bounds);
        ring.setPen(QPen(mColor, pen, Qt::SolidLine, Qt::RoundCap));
        ring.drawArc(bounds, 90 * 16, -100 * 16);
        ring.end();
        mRing = QPixmap::fromImage(image);
    }
    painter.drawPixmap(0, 0, mRing);
}

void SpinnerView::tick()
{
    if (mStep == 0)
        return;
    mTurn = std::fmod(mTurn + mStep, 360.0);
    setAngle(float(mTurn), QPointF(width() / 2.0, height() / 2.0), QVector3D(0, 0, 1));
}
