#include "ProgressBar.h"

#include "Skin.h"

#include <cmath>

ProgressBar::ProgressBar(DisplayView* parent, const char* name, const QString& styleText)
    : Panel(parent, name)
{
    setTouchBehavior(IgnoreTouches, true);
    setFill(Skin::parseColor(QStringLiteral("sliderTrackColor")));
    mBarColor = Skin::parseColor(QStringLiteral("sliderFillColor"));
    if (!styleText.isEmpty())
        setStyle(Style(styleText));
}

void ProgressBar::setRange(double minimum, double maximum)
{
    if (!mProgress.setRange(minimum, maximum)) {
        viewAssert("minimum < maximum",
                   QStringLiteral("Invalid progress range %1 to %2 View: %3").arg(minimum).arg(maximum),
                   __LINE__);
        return;
    }
    update();
}

void ProgressBar::setValue(double value, bool animated)
{
    mProgress.setValue(value, animated, kGlideSeconds);
    update();
}

void ProgressBar::setBarColor(const SkinColor& color)
{
    if (color == mBarColor)
        return;
    mBarColor = color;
    update();
}

void ProgressBar::setStyle(const Style& style)
{
    Panel::setStyle(style);
    QString text;
    if (style.stringValue(Style::Color, text))
        setBarColor(Skin::parseColor(text));
}

QSizeF ProgressBar::naturalSize(double width)
{
    return QSizeF(width > 0 ? width : 240, 6);
}

void ProgressBar::draw(QPainter& painter)
{
    Panel::draw(painter);
    const double shown = qBound(0.0, mProgress.shown(), 1.0);
    if (shown <= 0)
        return;
    const bool vertical = height() > width();
    // The fill never gets shorter than the track is thick, so that its round ends show.
    if (vertical) {
        const int length = qMax(width(), int(std::lround(shown * height())));
        drawShape(painter, QRect(0, height() - length, width(), length), mBarColor.color());
    } else {
        const int length = qMax(height(), int(std::lround(shown * width())));
        drawShape(painter, QRect(0, 0, length, height()), mBarColor.color());
    }
}

void ProgressBar::tick()
{
    Panel::tick();
    if (mProgress.advance())
        update();
}

void ProgressBar::valueChanged(bool animated, double value)
{
    setValue(value, animated);
}
