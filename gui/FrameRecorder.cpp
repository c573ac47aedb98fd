#include "FrameRecorder.h"

#include "DisplayDevice.h"

#include <GLCallRecorder.h>
#include <GLStateManager.h>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>
#include <ctime>
#include <unistd.h>

FrameRecorder::FrameRecorder(DisplayDevice* device) : mDevice(device)
{
    mPrevious = gfx::GLFunctions::current();
    mCounter = std::make_unique<gfx::GLCallRecorder>(mPrevious);
    gfx::GLFunctions::install(mCounter.get());
}

FrameRecorder::~FrameRecorder()
{
    gfx::GLFunctions::install(mPrevious);
}

void FrameRecorder::tick()
{
    const DisplayDevice::FrameStats before = mDevice->frameStats();
    const gfx::GLStateManager* cache = gfx::GLStateManager::instance();
    const quint64 requests = cache->requests();
    const quint64 forwarded = cache->forwarded();
    mCounter->reset();
    const qint64 start = mClock.nowNanoseconds();
    mDevice->doTick();
    Frame frame;
    frame.ns = mClock.nowNanoseconds() - start;
    frame.draws = mCounter->count("glDrawArrays") + mCounter->count("glDrawElements");
    frame.glCalls = mCounter->totalCalls();
    const DisplayDevice::FrameStats& after = mDevice->frameStats();
    frame.renderedPixels = after.renderedPixels - before.renderedPixels;
    frame.compositedPixels = after.compositedPixels - before.compositedPixels;
    frame.stateRequests = int(cache->requests() - requests);
    frame.stateForwarded = int(cache->forwarded() - forwarded);
    frame.swapped = after.drawnFrames > before.drawnFrames;
    addFrame(frame);
}

FrameRecorder::Section& FrameRecorder::current()
{
    for (Section& section : mSections) {
        if (section.name == mSection)
            return section;
    }
    mSections.append({mSection, {}});
    return mSections.last();
}

void FrameRecorder::addFrame(const Frame& frame)
{
    current().frames.append(frame);
    if (frame.swapped && mFirstSwapMs < 0)
        mFirstSwapMs = msSinceProcessStart();
}

qint64 FrameRecorder::startTicks(const QByteArray& statLine)
{
    // The command name, field 2, may hold blanks and parentheses: fields are
    // counted from its last ')'. The start time is field 22.
    const int nameEnd = statLine.lastIndexOf(')');
    if (nameEnd < 0)
        return -1;
    const QList<QByteArray> fields = statLine.mid(nameEnd + 1).simplified().split(' ');
    if (fields.size() < 20)
        return -1;
    bool ok = false;
    const qint64 ticks = fields[19].toLongLong(&ok);
    return ok ? ticks : -1;
}

double FrameRecorder::msSinceProcessStart()
{
    QFile file(QStringLiteral("/proc/self/stat"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const qint64 ticks = startTicks(file.readAll());
    if (ticks < 0)
        return -1;
    // The kernel counts the start time on the boot clock, in clock ticks.
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    const double nowMs = double(now.tv_sec) * 1000.0 + now.tv_nsec / 1e6;
    return nowMs - double(ticks) * 1000.0 / double(sysconf(_SC_CLK_TCK));
}

void FrameRecorder::setSection(const QString& name)
{
    mSection = name;
}

QStringList FrameRecorder::sections() const
{
    QStringList names;
    for (const Section& section : mSections)
        names << section.name;
    return names;
}

QVector<FrameRecorder::Frame> FrameRecorder::frames(const QString& name) const
{
    for (const Section& section : mSections) {
        if (section.name == name)
            return section.frames;
    }
    return {};
}

FrameRecorder::Summary FrameRecorder::summary(const QString& section) const
{
    return summarize(frames(section));
}

FrameRecorder::Summary FrameRecorder::total() const
{
    QVector<Frame> all;
    for (const Section& section : mSections)
        all += section.frames;
    return summarize(all);
}

FrameRecorder::Summary FrameRecorder::summarize(const QVector<Frame>& frames)
{
    Summary s;
    s.frames = frames.size();
    if (frames.isEmpty())
        return s;
    QVector<qint64> times;
    times.reserve(frames.size());
    double totalNs = 0;
    for (const Frame& f : frames) {
        times.append(f.ns);
        totalNs += f.ns;
        s.drawsPerFrame += f.draws;
        s.glCallsPerFrame += f.glCalls;
        s.renderedPixelsPerFrame += f.renderedPixels;
        s.compositedPixelsPerFrame += f.compositedPixels;
        s.stateRequestsPerFrame += f.stateRequests;
        s.stateForwardedPerFrame += f.stateForwarded;
        if (f.glCalls == 0 && f.renderedPixels == 0 && f.compositedPixels == 0)
            ++s.idleFrames;
    }
    std::sort(times.begin(), times.end());
    const int n = frames.size();
    const auto rank = [&](double q) {
        return times[qBound(0, int(std::ceil(q * n)) - 1, n - 1)] / 1e6;
    };
    s.meanMs = totalNs / n / 1e6;
    s.p50Ms = rank(0.50);
    s.p99Ms = rank(0.99);
    s.maxMs = times.last() / 1e6;
    s.drawsPerFrame /= n;
    s.glCallsPerFrame /= n;
    s.renderedPixelsPerFrame /= n;
    s.compositedPixelsPerFrame /= n;
    s.stateRequestsPerFrame /= n;
    s.stateForwardedPerFrame /= n;
    return s;
}

namespace {
QString row(const QString& name, const FrameRecorder::Summary& s)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9 %10\n")
        .arg(name, -16)
        .arg(s.frames, 6)
        .arg(s.meanMs, 8, 'f', 2)
        .arg(s.p50Ms, 8, 'f', 2)
        .arg(s.p99Ms, 8, 'f', 2)
        .arg(s.maxMs, 8, 'f', 2)
        .arg(s.drawsPerFrame, 7, 'f', 1)
        .arg(s.glCallsPerFrame, 8, 'f', 1)
        .arg(s.renderedPixelsPerFrame, 11, 'f', 0)
        .arg(s.compositedPixelsPerFrame, 11, 'f', 0);
}

QJsonObject toJson(const FrameRecorder::Summary& s)
{
    return QJsonObject{{"frames", s.frames},
                       {"meanMs", s.meanMs},
                       {"p50Ms", s.p50Ms},
                       {"p99Ms", s.p99Ms},
                       {"maxMs", s.maxMs},
                       {"drawsPerFrame", s.drawsPerFrame},
                       {"glCallsPerFrame", s.glCallsPerFrame},
                       {"renderedPixelsPerFrame", s.renderedPixelsPerFrame},
                       {"compositedPixelsPerFrame", s.compositedPixelsPerFrame},
                       {"stateRequestsPerFrame", s.stateRequestsPerFrame},
                       {"stateForwardedPerFrame", s.stateForwardedPerFrame},
                       {"idleFrames", s.idleFrames}};
}
} // namespace

QString FrameRecorder::report() const
{
    QString text = QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9 %10\n")
                       .arg(QStringLiteral("section"), -16)
                       .arg(QStringLiteral("frames"), 6)
                       .arg(QStringLiteral("mean ms"), 8)
                       .arg(QStringLiteral("p50 ms"), 8)
                       .arg(QStringLiteral("p99 ms"), 8)
                       .arg(QStringLiteral("max ms"), 8)
                       .arg(QStringLiteral("draws"), 7)
                       .arg(QStringLiteral("GL calls"), 8)
                       .arg(QStringLiteral("rendered px"), 11)
                       .arg(QStringLiteral("composed px"), 11);
    for (const Section& section : mSections)
        text += row(section.name, summarize(section.frames));
    if (mSections.size() > 1)
        text += row(QStringLiteral("total"), total());
    if (mFirstSwapMs >= 0)
        text += QStringLiteral("first swap %1 ms after process start\n").arg(mFirstSwapMs, 0, 'f', 1);
    return text;
}

QByteArray FrameRecorder::json() const
{
    QJsonArray sections;
    for (const Section& section : mSections) {
        QJsonObject object = toJson(summarize(section.frames));
        object.insert(QStringLiteral("section"), section.name);
        QJsonArray times;
        for (const Frame& f : section.frames)
            times.append(f.ns / 1e6);
        object.insert(QStringLiteral("frameMs"), times);
        sections.append(object);
    }
    QJsonObject root{{"sections", sections}, {"total", toJson(total())}};
    if (mFirstSwapMs >= 0)
        root.insert(QStringLiteral("firstSwapMs"), mFirstSwapMs);
    return QJsonDocument(root).toJson();
}
