#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QVector>

class PeerOptions;

// Times a peer's frames on the clock the demo uses: wall time from the start of a
// frame's work to the return of the swap that shows it. Frames are grouped like
// the demo's report ("(first frame)", "(warm-up)", then the scene), and the time
// from process start to the first swap is kept as the cold start.
class PeerFrameClock
{
public:
    PeerFrameClock(const QString& scene, const PeerOptions& options);

    // Before the application exists: a frame follows its update request at once, as
    // the demo's ticks follow each other, instead of after Qt's default 5 ms pause.
    static void runBackToBack();

    // Marks the start of a frame's work; ignored while a frame is open, so that
    // every event that may lead to a frame can call it.
    void frameStarted();
    // Closes the open frame at its swap. Returns true once the run is complete.
    bool frameSwapped();
    bool inFrame() const { return mOpen; }
    // Frames swapped so far.
    int frames() const { return mFrameMs.size(); }
    // The animation time of the frame being drawn: whole 16 ms steps per frame, as
    // the demo steps its clock before each tick.
    double sceneSeconds() const { return (frames() + 1) * kStepMs / 1000.0; }

    // The demo's table (the draw and GL call columns are counted outside, so they stay empty).
    QString report() const;
    QByteArray json() const;
    // Prints the report, writes the JSON if asked; false when the file cannot be written.
    bool finish(const QString& statsPath) const;

    static constexpr int kStepMs = 16;

private:
    struct Section
    {
        QString name;
        int first;
        int end;
    };
    QVector<Section> sections() const;

    QString mScene;
    int mWarmup;
    int mTotal;
    bool mIdle;
    QElapsedTimer mTimer;
    qint64 mStartNs = 0;
    bool mOpen = false;
    double mFirstSwapMs = -1;
    QVector<double> mFrameMs;
};
