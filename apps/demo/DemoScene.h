#pragma once

#include <QObject>
#include <QPixmap>
#include <QTimer>

class DisplayDevice;
class DisplayView;
class LabelView;
class PanelView;
class SpinnerView;

// A small centre-display screen: a status bar with a clock, a media card with
// cover art, titles and a moving progress bar, and a charging card with a turning
// spinner and a pulsing light. Everything is laid out from the display's size.
class DemoScene : public QObject
{
    Q_OBJECT

public:
    explicit DemoScene(DisplayDevice* device);

    // Stops every animation, so that frames without changes draw nothing (for
    // measurements).
    void freeze();

    // A generated cover picture, so that the demo needs no files.
    static QPixmap coverArt(int size);
    // The views the benchmark touches: one small label, the whole scene.
    LabelView* clock() const { return mClock; }
    DisplayView* root() const { return mRoot; }

private slots:
    void progressDone(DisplayView* view);
    void pulseDone(DisplayView* view);
    void secondPassed();

private:
    void buildStatusBar(int width);
    void buildMediaCard(const QRect& rect);
    void buildChargingCard(const QRect& rect);

    DisplayDevice* mDevice;
    DisplayView* mRoot = nullptr;
    LabelView* mClock = nullptr;
    PanelView* mProgress = nullptr;
    PanelView* mPulse = nullptr;
    SpinnerView* mSpinner = nullptr;
    bool mFrozen = false;
    int mProgressWidth = 0;
    int mSeconds = 0;
    QTimer mSecondTimer;
};
