#pragma once

#include "OrbisUIFrameworkExport.h"

#include <Clock.h>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>

class DisplayDevice;
namespace gfx {
class GLCallRecorder;
class GLFunctions;
} // namespace gfx

/// Frame statistics of one display for performance reports: the wall time of each
/// tick, the draw calls and GL calls that reached the driver, the state changes the
/// GL state cache kept from it, and the area rendered into layers and composited on
/// screen. Frames are grouped in named sections (the screens of a run). While it lives, a counter sits in
/// front of the GL driver.
///
/// Time is read from the system's monotonic clock, not the framework clock: a
/// reproducible run steps the framework clock by whole frames, yet its report must
/// show what the frames really cost.
class ORBIS_UI_EXPORT FrameRecorder
{
public:
    /// The figures of one recorded frame.
    struct Frame
    {
        qint64 ns = 0;
        int draws = 0;
        int glCalls = 0;
        qint64 renderedPixels = 0;
        qint64 compositedPixels = 0;
        /// GL state changes asked of the state cache, and those it let through.
        int stateRequests = 0;
        int stateForwarded = 0;
        /// The frame ended with a buffer swap.
        bool swapped = false;
    };
    /// The figures of a section's frames, with the wall time's percentiles.
    struct Summary
    {
        int frames = 0;
        double meanMs = 0;
        double p50Ms = 0;
        double p99Ms = 0;
        double maxMs = 0;
        double drawsPerFrame = 0;
        double glCallsPerFrame = 0;
        double renderedPixelsPerFrame = 0;
        double compositedPixelsPerFrame = 0;
        double stateRequestsPerFrame = 0;
        double stateForwardedPerFrame = 0;
        /// Frames that drew nothing at all.
        int idleFrames = 0;
    };

    explicit FrameRecorder(DisplayDevice* device);
    ~FrameRecorder();
    FrameRecorder(const FrameRecorder&) = delete;
    FrameRecorder& operator=(const FrameRecorder&) = delete;

    /// Runs one tick of the display and records it in the current section.
    void tick();
    /// Records a frame measured elsewhere.
    void addFrame(const Frame& frame);

    /// Later frames go to this section (created on first use; the first is "all"
    /// until one is named).
    void setSection(const QString& name);
    const QString& section() const { return mSection; }
    QStringList sections() const;
    QVector<Frame> frames(const QString& section) const;
    Summary summary(const QString& section) const;
    /// Every frame of every section.
    Summary total() const;

    /// Milliseconds from process start to the end of the first frame that swapped
    /// (the cold start); -1 until one has.
    double firstSwapMs() const { return mFirstSwapMs; }

    /// Nearest-rank percentiles over the frames' times.
    static Summary summarize(const QVector<Frame>& frames);
    /// A table with one line per section and one for the whole run, then the cold start.
    QString report() const;
    /// The same, with every frame's time in milliseconds.
    QByteArray json() const;

    /// Time since the kernel started this process, at its 10 ms resolution; -1 if unknown.
    static double msSinceProcessStart();
    /// The start time (clock ticks after boot) in a /proc/PID/stat line; -1 if malformed.
    static qint64 startTicks(const QByteArray& statLine);

private:
    struct Section
    {
        QString name;
        QVector<Frame> frames;
    };
    Section& current();

    DisplayDevice* mDevice;
    std::unique_ptr<gfx::GLCallRecorder> mCounter;
    gfx::GLFunctions* mPrevious = nullptr;
    MonotonicClock mClock;
    QVector<Section> mSections;
    QString mSection = QStringLiteral("all");
    double mFirstSwapMs = -1;
};
