#pragma once

#include <QString>
#include <QStringList>

// The command line shared by the peer programs, with the demo's meanings: run
// WARMUP + FRAMES frames back to back (the first frame and the rest of the warm-up
// are reported apart), optionally with nothing animating, or measure heap bytes.
class PeerOptions
{
public:
    // Returns false with error() set on a bad argument.
    bool parse(const QStringList& arguments);
    // Parses a program's arguments and answers --help and mistakes itself: returns
    // the exit status then, or -1 when the program is to run.
    int parse(int argc, char** argv, const QString& program);
    QString error() const { return mError; }
    static QString usage(const QString& program);

    int frames() const { return mFrames; }
    int warmup() const { return mWarmup; }
    bool idle() const { return mIdle; }
    QString statsPath() const { return mStats; }
    QString screenshotPath() const { return mScreenshot; }
    // Heap bytes per instance over this many instances instead of a frame run (0: no).
    int heapInstances() const { return mHeap; }
    bool helpRequested() const { return mHelp; }

private:
    bool fail(const QString& message);

    int mFrames = 600;
    int mWarmup = 60;
    bool mIdle = false;
    QString mStats;
    QString mScreenshot;
    int mHeap = 0;
    bool mHelp = false;
    QString mError;
};
