#pragma once

#include "DemoContent.h"

#include <ElapsedTimer.h>
#include <QObject>
#include <memory>

class DisplayDevice;
class DisplayView;
class ProgressRing;
class ScrollSceneList;
class ScrollSceneRows;

// The fixed scene the frame benchmarks compare: a header, a list of 200 tracks
// that scrolls on by itself at 200 pixels a second (starting over at its end), and
// a panel with a turning ring. Its look comes from the [Bench] styles.
class ScrollScene : public QObject, public DemoContent
{
    Q_OBJECT

public:
    explicit ScrollScene(DisplayDevice* device);
    ~ScrollScene() override;

    QString screenName() const override { return QStringLiteral("scroll"); }
    qint64 settledForMs() const override { return mStarted.elapsed(); }

    ScrollSceneList* list() const { return mList; }
    ProgressRing* ring() const { return mRing; }
    // Stops the scrolling and the ring.
    void freeze();

    static constexpr int kRows = 200;
    static constexpr double kPixelsPerSecond = 200;
    static constexpr double kSecondsPerTurn = 3;

private:
    DisplayDevice* mDevice;
    std::unique_ptr<ScrollSceneRows> mRows;
    DisplayView* mRoot;
    ScrollSceneList* mList;
    ProgressRing* mRing;
    ElapsedTimer mStarted;
};
