#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

// The demo's command line. Parsed before any window or GL context exists, so that
// --help and mistakes are answered without a display.
class DemoOptions
{
public:
    // Returns false with error() set on a bad argument.
    bool parse(const QStringList& arguments);
    QString error() const { return mError; }
    static QString usage();
    static QStringList sceneNames();

    QSize size() const { return mSize; }
    // 0: run until the window is closed (or, with a script, until it has played).
    int frames() const { return mFrames; }
    // Frames run before those counted by --frames, the first included; reported apart.
    int warmup() const { return mWarmup; }
    // The scroll scene holds still (the frame loop still ticks).
    bool idle() const { return mIdle; }
    QString screenshotPath() const { return mScreenshot; }
    // 0: none; otherwise every N-th frame is written as a numbered picture.
    int screenshotEvery() const { return mScreenshotEvery; }
    // A folder that receives one picture of each screen the run settles on.
    QString screensPath() const { return mScreens; }
    QString statsPath() const { return mStats; }
    QString scriptPath() const { return mScript; }
    QString scene() const { return mScene; }
    bool night() const { return mNight; }
    // Animations and scripts follow the system clock instead of whole frames.
    bool realTime() const { return mRealTime; }
    QStringList configOverrides() const { return mOverrides; }
    bool helpRequested() const { return mHelp; }

private:
    bool fail(const QString& message);
    bool positiveInt(const QString& value, const QString& what, int* out);

    QSize mSize{1280, 800};
    bool mSizeGiven = false;
    int mFrames = 0;
    int mWarmup = 0;
    bool mIdle = false;
    QString mScreenshot;
    int mScreenshotEvery = 0;
    QString mScreens;
    QString mStats;
    QString mScript;
    QString mScene = QStringLiteral("home");
    bool mNight = false;
    bool mRealTime = false;
    QStringList mOverrides;
    bool mHelp = false;
    QString mError;
};
