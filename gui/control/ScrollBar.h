#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"
#include "SingleShotTimer.h"

/// The thin position indicator a scrolling view shows while its content moves. It is a
/// child of the scrolling view, sizes its slider from the ratio of content to view,
/// squeezes the slider when the content is pulled past an end, fades in on movement
/// and, once auto-dismissing, fades out "scrollbar/timeout" milliseconds after the
/// last movement. Touches pass through it to the scrolling view.
///
/// The bar's own layout margin (setLayoutMargin, or Margin in its style) supplies the
/// four margins that resizeToView places it by. A fade-out takes kFadeOutSeconds.
class ORBIS_UI_EXPORT ScrollBar : public DisplayView
{
    Q_OBJECT

public:
    static constexpr double kFadeInSeconds = 0.5;
    static constexpr double kFadeOutSeconds = 0.3;
    static constexpr int kMinSliderLength = 60;
    static constexpr int kSqueezedSliderLength = 5;
    /// Distance of the bar from the ends of the view along its axis, and from its edge.
    static constexpr int kEndInset = 10;
    static constexpr int kEdgeInset = 5;

    explicit ScrollBar(DisplayView* parent);

    /// `offset` is how far the content is scrolled, `max` how far it can be.
    void setOffset(double offset, double max);
    void setShouldAutoDimiss(bool on);
    void setShouldShow(bool on);
    void updateVisibility(bool animated);
    bool shouldShowScrollBar();
    /// Where the slider lies along the bar and how long it is; untouched when the bar
    /// should not show.
    void sliderOffsetAndLength(double& offset, int& length);
    void updateSliderLength();
    void restartDismissTimer();

    double offset() const { return mOffset; }
    double max() const { return mMax; }
    int sliderLength() const { return mSliderLength; }
    bool shouldAutoDismiss() const { return mShouldAutoDismiss; }
    bool isDismissTimerActive() const { return mDismissTimer.isActive(); }

    /// Virtual operations added to those of the view.
    virtual int scrollBarSize() = 0;
    virtual int scrollingViewSize() = 0;

    void visibilityChanged(DisplayView* view) override;

public slots:
    virtual void resizeToView(DisplayView* view);
    /// Fades the bar out, unless the dismiss timer runs: then its expiry does.
    void fadeOut();
    void dismissTimerExpired();

protected:
    /// The slider picture of the assets folder, cut so that it stretches along the
    /// axis between its rounded ends. All bars share one decoded source per file.
    static DisplayImage sliderImage(const char* name, Qt::Orientation orientation);

private:
    double mMax = -1.0;
    double mOffset = -1.0;
    int mSliderLength = 0;
    SingleShotTimer mDismissTimer;
    bool mShouldShow = true;
    bool mShouldAutoDismiss = false;
};
