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
/// tick, the draw calls and GL calls that reached the driver, and the area rendered
/// into layers and composited on screen. Frames are grouped in named sections (the
/// screens of a run). While it lives, a counter sits in front of the GL driver.
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

    /// Nearest-rank percentiles over the frames' times.
    static Summary summarize(const QVector<Frame>& frames);
    /// A table with one line per section and one for the whole run.
    QString report() const;
    QByteArray json() const;

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
};
