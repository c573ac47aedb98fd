#include "ProgressRing.h"

#include "Skin.h"

#include <QPainter>
#include <QPainterPath>
#include <QVector3D>
#include <cmath>

ProgressRing::ProgressRing(DisplayView* parent, const char* name, const QString& styleText)
    : DisplayView(parent, name)
{
    setTouchBehavior(IgnoreTouches, true);
    mArcColor = Skin::parseColor(QStringLiteral("accentColor"));
    mTrackColor = Skin::parseColor(QStringLiteral("sliderTrackColor"));
    if (!styleText.isEmpty())
        setStyle(Style(styleText));
}

void ProgressRing::setRange(double minimum, double maximum)
{
    if (!mProgress.setRange(minimum, maximum)) {
        viewAssert("minimum < maximum",
                   QStringLiteral("Invalid progress range %1 to %2 View: %3").arg(minimum).arg(maximum),
                   __LINE__);
        return;
    }
    update();
}

void ProgressRing::setValue(double value, bool animated)
{
    mProgress.setValue(value, animated, kGlideSeconds);
    update();
}

void ProgressRing::setArcColor(const SkinColor& color)
{
    if (color == mArcColor)
        return;
    mArcColor = color;
    update();
}

void ProgressRing::setTrackColor(const SkinColor& color)
{
    if (color == mTrackColor)
        return;
    mTrackColor = color;
    update();
}

void ProgressRing::setThickness(int pixels)
{
    pixels = qMax(1, pixels);
    if (pixels == mThickness)
        return;
    mThickness = pixels;
    update();
}

void ProgressRing::setTurnPeriod(double seconds)
{
    if (!std::isfinite(seconds))
        seconds = 0;
    // The turn goes on from the angle it has reached.
    mTurnStart = angle();
    mTurnPeriod = seconds;
    mTurnTimer.start();
    applyTurn();
}

void ProgressRing::setStyle(const Style& style)
{
    DisplayView::setStyle(style);
    if (style.isNull())
        return;
    QString text;
    if (style.stringValue(Style::Color, text))
        setArcColor(Skin::parseColor(text));
    if (style.stringValue(Style::StrokeColor, text))
        setTrackColor(Skin::parseColor(text));
    int width = 0;
    if (style.intValue(Style::StrokeWidth, width))
        setThickness(width);
}

QSizeF ProgressRing::naturalSize(double width)
{
    const double side = width > 0 ? width : 96;
    return QSizeF(side, side);
}

void ProgressRing::draw(QPainter& painter)
{
    DisplayView::draw(painter);
    const double side = qMin(width(), height());
    if (side <= mThickness)
        return;
    // The pen is centred on the path: keep the whole stroke inside the view.
    const double inset = mThickness / 2.0;
    const QRectF circle(QPointF((width() - side) / 2.0 + inset, (height() - side) / 2.0 + inset),
                        QSizeF(side - mThickness, side - mThickness));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const QColor track = mTrackColor.color();
    if (track.isValid() && track.alpha() > 0) {
        QPainterPath ring;
        ring.addEllipse(circle);
        painter.setPen(QPen(track, mThickness));
        painter.drawPath(ring);
    }
    const double sweep = qBound(0.0, mProgress.shown(), 1.0) * 360.0;
    if (sweep > 0) {
        QPainterPath arc;
        arc.arcMoveTo(circle, 90);
        arc.arcTo(circle, 90, -sweep);
        painter.setPen(QPen(mArcColor.color(), mThickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(arc);
    }
    painter.restore();
}

void ProgressRing::applyTurn()
{
    if (mTurnPeriod == 0)
        return;
    const double turned = mTurnStart + 360.0 * (mTurnTimer.elapsed() / 1000.0) / mTurnPeriod;
    setAngle(float(std::fmod(turned, 360.0)), QPointF(width() / 2.0, height() / 2.0), QVector3D(0, 0, 1));
}

void ProgressRing::tick()
{
    DisplayView::tick();
    if (mProgress.advance())
        update();
    applyTurn();
}

void ProgressRing::resized()
{
    DisplayView::resized();
    // The pivot is the centre, which moved.
    applyTurn();
}

void ProgressRing::valueChanged(bool animated, double value)
{
    setValue(value, animated);
}
