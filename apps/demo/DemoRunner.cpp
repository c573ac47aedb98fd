#include "DemoRunner.h"

#include "CentreDisplay.h"
#include "ScrollScene.h"
#include "VehicleSimulator.h"

#include <DataValues.h>
#include <DisplayDevice.h>
#include <DisplayDeviceWidget.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QThreadPool>
#include <QTimer>
#include <QWindow>
#include <SkinManager.h>
#include <StyleManager.h>
#include <input/touch/ScriptTouchDriver.h>
#include <input/touch/TouchDevice.h>

namespace {
// A screen is pictured once it has rested this long, so that entry animations end.
constexpr int kSettleMs = 1200;
// After the last step of a script, the run goes on this long before it ends.
constexpr int kScriptTailMs = 1500;
} // namespace

DemoRunner::DemoRunner(const DemoOptions& options, const TouchScript& script)
    : mOptions(options), mScript(script)
{
    mPreviousSink = Logger::setSink(this);
}

DemoRunner::~DemoRunner()
{
    mDisplay.reset();
    mDevice.reset();
    if (mVehicle)
        mVehicle->stop();
    Logger::setSink(mPreviousSink);
}

void DemoRunner::write(const LogRecord& record)
{
    if (record.isAssertion)
        ++mAssertions;
    QTextStream(stderr) << Logger::format(record) << '\n';
}

bool DemoRunner::selfTerminating() const
{
    return mOptions.frames() > 0 || !mScript.isEmpty();
}

int DemoRunner::run()
{
    if (selfTerminating() && !mOptions.realTime())
        mClock = std::make_unique<ManualClock>();
    {
        DataValue::EventLocker lock(GUI_dayMode);
        GUI_dayMode.setValue(!mOptions.night());
    }
    StyleManager::registerOptionalStyleOverrideName(QStringLiteral("demo"));
    StyleManager::instance()->initialize();
    mDevice = std::make_unique<DisplayDevice>(mOptions.size().width(), mOptions.size().height());
    if (!mDevice->hasWindow()) {
        QTextStream(stderr) << "orbis-demo needs an X display with OpenGL (try xvfb-run)\n";
        return 1;
    }
    // Every screen of the demo paints the whole display: the screen's layer needs no
    // alpha channel, and compositing it needs no blending.
    mDevice->setLayerBackingType(ViewBuffer::OpaqueBacking);
    mStepMs = mDevice->timer()->interval();
    mVehicle = std::make_unique<VehicleSimulator>();
    if (mOptions.scene() == QLatin1String("scroll")) {
        auto scene = std::make_unique<ScrollScene>(mDevice.get());
        if (mOptions.idle())
            scene->freeze();
        mDisplay = std::move(scene);
    } else
        mDisplay = std::make_unique<CentreDisplay>(mDevice.get(), mOptions.scene());
    mRecorder = std::make_unique<FrameRecorder>(mDevice.get());

    if (!mScript.isEmpty()) {
        auto driver = std::make_unique<ScriptTouchDriver>(mScript);
        mScriptDriver = driver.get();
        TouchDevice::getInstance(mDevice.get())->setTouchDriver(std::move(driver));
    }
    if (mOptions.frames() > 0)
        mLastFrame = mOptions.warmup() + mOptions.frames();
    else if (!mScript.isEmpty())
        mLastFrame = int((mScript.durationMs() + kScriptTailMs) / mStepMs) + 1;

    // The runner drives the display's tick, to measure it and to step the clock.
    QObject::disconnect(mDevice->timer(), SIGNAL(timeout()), mDevice.get(), SLOT(doTick()));
    connect(mDevice->timer(), &QTimer::timeout, this, &DemoRunner::frame);
    if (mClock)
        mDevice->timer()->setInterval(0);
    mDevice->setTitle(QStringLiteral("Orbis centre display"));
    mDevice->setVisible(true);
    mVehicle->start();

    const int status = QCoreApplication::exec();
    mDevice->timer()->stop();
    mVehicle->stop();
    QThreadPool::globalInstance()->waitForDone();
    if (!writeStats())
        return 1;
    if (mAssertions > 0 && selfTerminating()) {
        QTextStream(stderr) << "orbis-demo: " << mAssertions << " assertion(s) logged\n";
        return 3;
    }
    return status;
}

void DemoRunner::capture(const QString& path)
{
    const QFileInfo info(path);
    QDir().mkpath(info.absolutePath());
    mDevice->screenshot(path);
    // The picture is taken when the frame is composited: make it the whole screen.
    mDevice->reveal();
}

void DemoRunner::frame()
{
    // Frames before the window is on screen would be thrown away.
    const QWindow* window = mDevice->widget()->windowHandle();
    if (!window || !window->isExposed())
        return;
    if (mClock)
        mClock->advanceMs(mStepMs);
    ++mFrames;
    bool capturing = false;
    const QString screen = mDisplay->screenName();
    // Each screen is pictured once per skin.
    const QString picture = QString(screen).replace('/', '-') +
                            (SkinManager::instance()->isDay() ? QString() : QStringLiteral("-night"));
    if (!mOptions.screensPath().isEmpty() && mDisplay->settledForMs() >= kSettleMs &&
        !mCapturedScreens.contains(picture)) {
        mCapturedScreens.insert(picture);
        capture(QDir(mOptions.screensPath()).filePath(picture + QStringLiteral(".png")));
        capturing = true;
    }
    if (mOptions.screenshotEvery() > 0 && mFrames % mOptions.screenshotEvery() == 0) {
        const QString base = mOptions.screenshotPath().isEmpty()
                                 ? QStringLiteral("orbis-demo")
                                 : mOptions.screenshotPath().left(mOptions.screenshotPath().lastIndexOf('.'));
        capture(QStringLiteral("%1-%2.png").arg(base).arg(mFrames, 5, 10, QLatin1Char('0')));
        capturing = true;
    }
    if (mFrames == mLastFrame && !mOptions.screenshotPath().isEmpty()) {
        capture(mOptions.screenshotPath());
        capturing = true;
    }
    // Frames that read pixels back are not what the screen costs.
    // The first frame compiles shaders and fills caches: a start-up cost, reported apart.
    if (mFrames == 1)
        mRecorder->setSection(QStringLiteral("(first frame)"));
    else if (mFrames <= mOptions.warmup())
        mRecorder->setSection(QStringLiteral("(warm-up)"));
    else if (capturing)
        mRecorder->setSection(QStringLiteral("(capture)"));
    else
        mRecorder->setSection(mDisplay->isSettled() ? screen : QStringLiteral("(transition)"));
    mRecorder->tick();
    if (mLastFrame > 0 && mFrames >= mLastFrame) {
        mDevice->timer()->stop();
        QCoreApplication::quit();
    }
}

bool DemoRunner::writeStats()
{
    const QString text = mRecorder->report();
    QTextStream(stdout) << text;
    if (mOptions.statsPath().isEmpty())
        return true;
    QFile file(mOptions.statsPath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream(stderr) << "orbis-demo: cannot write " << mOptions.statsPath() << "\n";
        return false;
    }
    file.write(mOptions.statsPath().endsWith(QLatin1String(".json")) ? mRecorder->json() : text.toUtf8());
    return true;
}
