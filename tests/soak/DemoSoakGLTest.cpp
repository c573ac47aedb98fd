#include "CentreDisplay.h"
#include "DataValues.h"
#include "DisplayDeviceWidget.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "ScopedConfigOverride.h"
#include "StyleManager.h"
#include "TextureCache.h"
#include "VehicleSimulator.h"
#include "ViewBuffer.h"
#include "ViewBufferManager.h"
#include "input/touch/ScriptTouchDriver.h"
#include "input/touch/TouchDevice.h"
#include "support/LiveGLObjects.h"
#include "support/ScreenTest.h"
#include "support/SoakScale.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>
#include <iostream>
#include <limits>
#include <malloc.h>
#include <random>
#include <unistd.h>

// The demo application run frame after frame on a stepped clock, with a touch
// script tapping and swiping over it and the vehicle simulation publishing data:
// what it holds (memory, GL objects, cached textures) must stop growing once it
// has warmed up.

namespace {

constexpr int kFrameMs = 16;

struct Sample
{
    int frame = 0;
    qint64 rssKb = 0;
    qint64 heapKb = 0;
    int textures = 0;
    int cacheTextures = 0;
    int buffers = 0;
    int framebuffers = 0;
    int framebuffersMade = 0;
    quint64 cacheBytes = 0;
    quint64 cacheLiveBytes = 0;
};

qint64 residentKb()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toLongLong() * (sysconf(_SC_PAGESIZE) / 1024) : 0;
}

int framebuffersIn(DisplayView* view)
{
    int count = view->layer() && view->layer()->framebuffer() ? 1 : 0;
    for (DisplayView* child : view->children().list())
        count += framebuffersIn(child);
    return count;
}

// Taps and swipes at random places, one gesture every half second, for `ms`.
QByteArray gestures(qint64 ms)
{
    std::mt19937 random(7);
    const auto uniform = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    QByteArray script;
    QTextStream out(&script);
    for (qint64 t = 100; t + 400 < ms; t += 500) {
        QPoint at(uniform(0, 1023), uniform(0, 599));
        out << t << " 0 down " << at.x() << ' ' << at.y() << '\n';
        const int moves = uniform(0, 1) ? 0 : uniform(2, 12);
        const QPoint step(uniform(-40, 40), uniform(-40, 40));
        for (int i = 1; i <= moves; ++i) {
            at = QPoint(qBound(0, at.x() + step.x(), 1023), qBound(0, at.y() + step.y(), 599));
            out << t + i * kFrameMs << " 0 move " << at.x() << ' ' << at.y() << '\n';
        }
        out << t + (moves + 1) * kFrameMs << " 0 up " << at.x() << ' ' << at.y() << '\n';
    }
    out.flush();
    return script;
}

class DemoSoakGLTest : public ScreenTest
{
protected:
    Sample sample(int frame)
    {
        malloc_trim(0);
        Sample s;
        s.frame = frame;
        s.rssKb = residentKb();
        const struct mallinfo2 heap = mallinfo2();
        // Large blocks are mapped apart from the arena until the allocator raises its
        // threshold for them: both together are what the process holds.
        s.heapKb = qint64((heap.uordblks + heap.hblkhd) / 1024);
        s.textures = mGL->textures();
        s.buffers = mGL->buffers();
        s.framebuffers = framebuffersIn(mDevice.get());
        s.framebuffersMade = mDevice->viewBufferManager()->framebuffersCreated();
        s.cacheTextures = gfx::TextureCache::instance()->liveTextureCount();
        s.cacheLiveBytes = gfx::TextureCache::instance()->liveBytes();
        s.cacheBytes = gfx::TextureCache::instance()->currentSize();
        return s;
    }
    static std::string describe(const Sample& s)
    {
        return QStringLiteral(
                   "frame %1: rss %2 kB, heap %3 kB, GL textures %4 (%9 from the texture cache, %10 kB), "
                   "GL buffers %5, framebuffers %6 (%7 made), texture cache %8 bytes stored")
            .arg(s.frame)
            .arg(s.rssKb)
            .arg(s.heapKb)
            .arg(s.textures)
            .arg(s.buffers)
            .arg(s.framebuffers)
            .arg(s.framebuffersMade)
            .arg(s.cacheBytes)
            .arg(s.cacheTextures)
            .arg(s.cacheLiveBytes / 1024)
            .toStdString();
    }

    ManualClock mClock;
    std::unique_ptr<LiveGLObjects> mGL;
};

} // namespace

TEST_F(DemoSoakGLTest, ScriptedUseHoldsNothingMoreAfterWarmUp)
{
    const int frames = soakCount(4000, 100000);
    // The cache fills up during the warm-up (a tenth of a long run, half a short one).
    const int warmUp = soakIsLong() ? frames / 10 : frames / 2;
    LogCapture log;
    // Each map keeps its own bounded pools: decoded tiles in its loader and tile
    // textures in its renderer. At their default sizes they go on filling long after
    // any warm-up as the map is panned to new places; small ones fill during it, so
    // whatever grows after it is a leak.
    ScopedConfigOverride tileMemory("maps/tile_memory_mb", 2);
    ScopedConfigOverride tileTextures("maps/tile_textures", 4);
    StyleManager::registerOptionalStyleOverrideName(QStringLiteral("demo"));
    StyleManager::instance()->initialize();
    open(1024, 600, QPoint(40, 40));
    mDevice->makeCurrent();
    mGL = std::make_unique<LiveGLObjects>();
    // The demo's moving shapes are new pictures as they change size, so the cache
    // fills up and then evicts. A short run fills a smaller cache before its
    // warm-up ends; a long one runs on the default budget.
    const quint64 budget = gfx::TextureCache::instance()->maxSize();
    if (!soakIsLong())
        gfx::TextureCache::instance()->setMaxSizeMb(4);
    VehicleSimulator vehicle;
    auto display = std::make_unique<CentreDisplay>(mDevice.get(), QStringLiteral("home"));
    TouchScript script;
    ASSERT_TRUE(script.parse(gestures(qint64(frames) * kFrameMs))) << script.error().toStdString();
    TouchDevice::getInstance(mDevice.get())->setTouchDriver(std::make_unique<ScriptTouchDriver>(script));

    // The curve's points: the start, a tenth, half, the end.
    const QList<int> reported{1, frames / 10, frames / 2, frames};
    QList<Sample> curve;
    QList<Sample> afterWarmUp;
    QStringList assertions;
    for (int frame = 1; frame <= frames; ++frame) {
        mClock.advanceMs(kFrameMs);
        vehicle.advanceTo(qint64(frame) * kFrameMs);
        mDevice->doTick();
        // X events and queued signals, as the application's loop would deliver them.
        if (frame % 50 == 0)
            QCoreApplication::processEvents();
        const bool periodic = frame >= warmUp && frame % (frames / 20) == 0;
        if (!reported.contains(frame) && !periodic)
            continue;
        // The capture would otherwise keep every message of a long run in the heap
        // being measured.
        assertions += log.assertions();
        log.clear();
        const Sample now = sample(frame);
        if (reported.contains(frame)) {
            curve.append(now);
            std::cout << describe(now) << std::endl;
        }
        if (periodic)
            afterWarmUp.append(now);
    }
    for (const Sample& s : curve)
        RecordProperty("frame_" + std::to_string(s.frame), describe(s));
    ASSERT_GE(afterWarmUp.size(), 4);
    const Sample& warm = afterWarmUp.first();
    const Sample& last = afterWarmUp.last();

    assertions += log.assertions();
    EXPECT_TRUE(assertions.isEmpty()) << assertions.join('\n').toStdString();
    EXPECT_TRUE(TouchDevice::getInstance(mDevice.get())->touchDriver() != nullptr);
    // GL objects: whatever the warm-up made, and no more, later on. The cache's
    // textures (stored, or evicted but still held by a map's tile pool) come and go
    // with what is drawn; the others must not grow.
    const gfx::TextureCache* cache = gfx::TextureCache::instance();
    for (const Sample& s : afterWarmUp) {
        EXPECT_LE(s.textures - s.cacheTextures, warm.textures - warm.cacheTextures) << describe(s);
        EXPECT_LE(s.buffers, warm.buffers) << describe(s);
        EXPECT_LE(s.framebuffers, warm.framebuffers) << describe(s);
        EXPECT_LE(s.cacheBytes, cache->maxSize() + cache->elasticity()) << describe(s);
    }
    EXPECT_EQ(last.framebuffersMade, warm.framebuffersMade) << describe(last);

    // The address sanitizer's allocator reports no heap figures and keeps freed
    // memory in quarantine: there its leak check stands in for these.
#if !defined(__SANITIZE_ADDRESS__)
    // Memory beyond the cache's live textures (which the software driver keeps in
    // the process's heap). Even so it swings by megabytes from sample to sample with
    // the tiles in flight and the caches' fill levels; a leak lifts its low-water
    // mark. So the lowest of the later half of the samples must stay within 512 kB
    // (heap) and 2 MB (resident) of the lowest of the earlier half: the short run
    // catches a leak of a kilobyte and a half per frame, the long one far less.
    const auto lowest = [](const QList<Sample>& samples, qint64 Sample::*kb) {
        qint64 low = std::numeric_limits<qint64>::max();
        for (const Sample& s : samples)
            low = qMin(low, s.*kb - qint64(s.cacheLiveBytes / 1024));
        return low;
    };
    const QList<Sample> earlier = afterWarmUp.mid(0, afterWarmUp.size() / 2);
    const QList<Sample> later = afterWarmUp.mid(afterWarmUp.size() / 2);
    EXPECT_LT(lowest(later, &Sample::heapKb) - lowest(earlier, &Sample::heapKb), 512)
        << describe(warm) << "\n"
        << describe(last);
    EXPECT_LT(lowest(later, &Sample::rssKb) - lowest(earlier, &Sample::rssKb), 2048) << describe(warm) << "\n"
                                                                                     << describe(last);
#endif

    display.reset();
    mGL.reset();
    gfx::TextureCache::instance()->setMaxSizeMb(int(budget / (1024 * 1024)));
}
