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
    const qreal pen = width() / 10.0;
    const QRectF ring = QRectF(0, 0, width(), height()).adjusted(pen, pen, -pen, -pen);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor track = mColor;
    track.setAlphaF(0.25);
    painter.setPen(QPen(track, pen));
    painter.drawEllipse(ring);
    painter.setPen(QPen(mColor, pen, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, 90 * 16, -100 * 16);
    painter.restore();
}

void SpinnerView::tick()
{
    mTurn = std::fmod(mTurn + mStep, 360.0);
    setAngle(float(mTurn), QPointF(width() / 2.0, height() / 2.0), QVector3D(0, 0, 1));
}
