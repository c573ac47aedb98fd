#pragma once

#include "DemoOptions.h"

#include <FrameRecorder.h>
#include <Logger.h>
#include <ManualClock.h>
#include <QObject>
#include <QSet>
#include <input/touch/TouchScript.h>
#include <memory>

class DemoContent;
class DisplayDevice;
class ScriptTouchDriver;
class VehicleSimulator;

// Runs the centre display the way the command line asks: interactively, or for a
// number of frames or the length of a touch script. A run that ends by itself
// steps the framework clock by whole frames (unless asked for real time), so it
// plays and pictures the same way every time. It records frame statistics per
// screen, writes the pictures asked for and counts the assertions logged.
class DemoRunner : public QObject, public LogSink
{
    Q_OBJECT

public:
    // The script has been parsed already (it may be empty).
    DemoRunner(const DemoOptions& options, const TouchScript& script);
    ~DemoRunner() override;

    // Builds the screen and runs until the run is over; returns the exit status.
    int run();

    void write(const LogRecord& record) override;
    int assertionCount() const { return mAssertions; }

private slots:
    void frame();

private:
    bool selfTerminating() const;
    void capture(const QString& path);
    bool writeStats();

    DemoOptions mOptions;
    TouchScript mScript;
    std::unique_ptr<ManualClock> mClock;
    std::unique_ptr<DisplayDevice> mDevice;
    std::unique_ptr<VehicleSimulator> mVehicle;
    std::unique_ptr<DemoContent> mDisplay;
    std::unique_ptr<FrameRecorder> mRecorder;
    ScriptTouchDriver* mScriptDriver = nullptr;
    LogSink* mPreviousSink = nullptr;
    int mFrames = 0;
    int mStepMs = 16;
    int mLastFrame = 0;
    int mAssertions = 0;
    QSet<QString> mCapturedScreens;
};
