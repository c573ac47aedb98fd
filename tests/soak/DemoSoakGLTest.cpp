#include "CentreDisplay.h"
#include "DataValues.h"
#include "DisplayDeviceWidget.h"
#include "LogCapture.h"
#include "ManualClock.h"
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
    int cachedTextures = 0;
    int buffers = 0;
    int framebuffers = 0;
    int framebuffersMade = 0;
    quint64 cacheBytes = 0;
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
        s.heapKb = qint64(mallinfo2().uordblks / 1024);
        s.textures = mGL->textures();
        s.buffers = mGL->buffers();
        s.framebuffers = framebuffersIn(mDevice.get());
        s.framebuffersMade = mDevice->viewBufferManager()->framebuffersCreated();
        s.cachedTextures = int(gfx::TextureCache::instance()->entryCount());
        s.cacheBytes = gfx::TextureCache::instance()->currentSize();
        return s;
    }
    static std::string describe(const Sample& s)
    {
        return QStringLiteral("frame %1: rss %2 kB, heap %3 kB, GL textures %4 (%9 cached), GL buffers %5, "
                              "framebuffers %6 (%7 made), texture cache %8 bytes")
            .arg(s.frame)
            .arg(s.rssKb)
            .arg(s.heapKb)
            .arg(s.textures)
            .arg(s.buffers)
            .arg(s.framebuffers)
            .arg(s.framebuffersMade)
            .arg(s.cacheBytes)
            .arg(s.cachedTextures)
            .toStdString();
    }

    ManualClock mClock;
    std::unique_ptr<LiveGLObjects> mGL;
};

} // namespace

// Off until the growth it shows on the demo with its map and screens is traced:
// over 12,000 frames, GL textures outside the texture cache went from 21 to 117 and
// the heap beyond the cache from 37 to 88 MB. Run it with
// --gtest_also_run_disabled_tests (ORBIS_SOAK=long for 100,000 frames).
TEST_F(DemoSoakGLTest, DISABLED_ScriptedUseHoldsNothingMoreAfterWarmUp)
{
    const int frames = soakCount(4000, 100000);
    // The cache fills up during the warm-up (a tenth of a long run, half a short one).
    const int warmUp = soakIsLong() ? frames / 10 : frames / 2;
    LogCapture log;
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

    // The curve's points: the start, the end of the warm-up, half, the end.
    const QList<int> reported{1, frames / 10, frames / 2, frames};
    QList<Sample> curve;
    Sample warm;
    Sample highest;
    for (int frame = 1; frame <= frames; ++frame) {
        mClock.advanceMs(kFrameMs);
        vehicle.advanceTo(qint64(frame) * kFrameMs);
        mDevice->doTick();
        // X events and queued signals, as the application's loop would deliver them.
        if (frame % 50 == 0)
            QCoreApplication::processEvents();
        const bool periodic = frame > warmUp && frame % (frames / 20) == 0;
        if (!reported.contains(frame) && !periodic)
            continue;
        const Sample now = sample(frame);
        if (reported.contains(frame)) {
            curve.append(now);
            std::cout << describe(now) << std::endl;
        }
        if (frame == warmUp) {
            warm = highest = now;
            highest.textures = warm.textures - warm.cachedTextures;
        } else if (frame > warmUp) {
            highest.textures = qMax(highest.textures, now.textures - now.cachedTextures);
            highest.buffers = qMax(highest.buffers, now.buffers);
            highest.framebuffers = qMax(highest.framebuffers, now.framebuffers);
            highest.cacheBytes = qMax(highest.cacheBytes, now.cacheBytes);
        }
    }
    for (const Sample& s : curve)
        RecordProperty("frame_" + std::to_string(s.frame), describe(s));
    const Sample& last = curve.last();

    EXPECT_TRUE(log.assertions().isEmpty()) << log.assertions().join('\n').toStdString();
    EXPECT_TRUE(TouchDevice::getInstance(mDevice.get())->touchDriver() != nullptr);
    // GL objects: whatever the warm-up made, and no more, later on. The cache's
    // textures come and go with what is drawn; the others must not grow.
    EXPECT_LE(highest.textures, warm.textures - warm.cachedTextures) << describe(last);
    EXPECT_LE(highest.buffers, warm.buffers) << describe(last);
    EXPECT_LE(highest.framebuffers, warm.framebuffers) << describe(last);
    EXPECT_EQ(last.framebuffersMade, warm.framebuffersMade) << describe(last);
    const gfx::TextureCache* cache = gfx::TextureCache::instance();
    EXPECT_LE(highest.cacheBytes, cache->maxSize() + cache->elasticity()) << describe(last);
    // Memory outside the texture cache (whose textures the software driver keeps in
    // the process's heap, filled to a different level at each sample): the
    // allocator's bytes in use within 2 MB of the warm-up's, resident memory within 8 MB.
    const auto beyondCache = [](qint64 kb, const Sample& s) {
        return kb - qint64(s.cacheBytes / 1024);
    };
    EXPECT_LT(beyondCache(last.heapKb, last) - beyondCache(warm.heapKb, warm), 2048) << describe(warm) << "\n"
                                                                                     << describe(last);
    EXPECT_LT(beyondCache(last.rssKb, last) - beyondCache(warm.rssKb, warm), 8192) << describe(warm) << "\n"
                                                                                   << describe(last);

    display.reset();
    mGL.reset();
    gfx::TextureCache::instance()->setMaxSizeMb(int(budget / (1024 * 1024)));
}
