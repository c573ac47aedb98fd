#include "ScrollBar.h"

#include "ConfigValue.h"

#include <cmath>

static ConfigIntValue gScrollbarTimeout("scrollbar/timeout", 900);

ScrollBar::ScrollBar(DisplayView* parent) : DisplayView(parent, "ScrollBar")
{
    setTouchBehavior(IgnoreTouches, true);
    if (parent)
        connect(parent, SIGNAL(resized(DisplayView*)), this, SLOT(resizeToView(DisplayView*)));
    connect(&mDismissTimer, &SingleShotTimer::timeout, this, &ScrollBar::dismissTimerExpired);
    show(false);
}

bool ScrollBar::shouldShowScrollBar()
{
    if (!mShouldShow || !(mMax > 0))
        return false;
    if (mSliderLength >= scrollBarSize() || mSliderLength < 1)
        return false;
    return scrollingViewSize() >= 1;
}

void ScrollBar::updateSliderLength()
{
    const int bar = scrollBarSize();
    const int view = scrollingViewSize();
    if (view > 0) {
        const double ratio = mMax / view;
        if (ratio != 0 && bar != 0) {
            mSliderLength = std::max(int(bar / (ratio + 1)), kMinSliderLength);
            return;
        }
    }
    mSliderLength = 0;
}

void ScrollBar::setOffset(double offset, double max)
{
    const bool maxChanged = max != mMax;
    mMax = max;
    if (maxChanged && max != 0)
        updateSliderLength();
    const bool offsetChanged = offset != mOffset;
    mOffset = offset;
    if (!maxChanged && !offsetChanged)
        return;
    updateVisibility(true);
    update();
}

void ScrollBar::sliderOffsetAndLength(double& offset, int& length)
{
    if (!shouldShowScrollBar())
        return;
    length = mSliderLength;
    const int track = scrollBarSize() - length;
    offset = mOffset / mMax * track;
    if (offset < 0) {
        length = std::max(int(length + offset), kSqueezedSliderLength);
        offset = 0;
    } else if (offset >= track) {
        length = std::max(int(length - (offset - track)), kSqueezedSliderLength);
        offset = scrollBarSize() - length;
    }
}

void ScrollBar::updateVisibility(bool animated)
{
    if (!shouldShowScrollBar()) {
        show(false);
        return;
    }
    DisplayView* parent = parentView();
    if (parent && parent->children().list().last() != this)
        raise();
    // A hidden bar fades in from nothing, a fading one from where the fade has it.
    setAlpha(1.0f, animated ? kFadeInSeconds : 0.0, InterpolatedValue::EaseOutExpo, true, 0, visibleFlag());
    if (mShouldAutoDismiss)
        restartDismissTimer();
}

void ScrollBar::restartDismissTimer()
{
    mDismissTimer.start(gScrollbarTimeout.value());
}

void ScrollBar::setShouldAutoDimiss(bool on)
{
    if (on == mShouldAutoDismiss)
        return;
    mShouldAutoDismiss = on;
    if (on)
        restartDismissTimer();
    else
        mDismissTimer.stop();
}

void ScrollBar::setShouldShow(bool on)
{
    mShouldShow = on;
    // Turned on, the bar waits for the next movement to show.
    if (!on)
        show(false);
}

void ScrollBar::fadeOut()
{
    if (mDismissTimer.isActive() || !visibleFlag())
        return;
    DisplayView::fadeOut(kFadeOutSeconds, InterpolatedValue::EaseInOutCubic);
}

void ScrollBar::dismissTimerExpired()
{
    fadeOut();
}

void ScrollBar::visibilityChanged(DisplayView* view)
{
    if (view == this)
        return;
    DisplayView::visibilityChanged(view);
    if (parentView() && parentView()->isVisible(nullptr))
        updateVisibility(true);
}

void ScrollBar::resizeToView(DisplayView*)
{
    const int before = mSliderLength;
    updateSliderLength();
    if (mSliderLength != before)
        update();
}

DisplayImage ScrollBar::sliderImage(const char* name, Qt::Orientation orientation)
{
    DisplayImage image{QString::fromLatin1(name)};
    if (orientation == Qt::Vertical) {
        const int cap = image.width() / 2;
        image.setCuts(QMargins(0, cap, 0, cap));
    } else {
        const int cap = image.height() / 2;
        image.setCuts(QMargins(cap, 0, cap, 0));
    }
    return image;
}
