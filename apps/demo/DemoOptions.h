#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

// The demo's command line: display size, frame count, screenshot and statistics
// files, configuration overrides.
class DemoOptions
{
public:
    // Returns false with error() set on a bad argument.
    bool parse(const QStringList& arguments);
    QString error() const { return mError; }
    static QString usage();

    QSize size() const { return mSize; }
    // 0: run until the window is closed.
    int frames() const { return mFrames; }
    QString screenshotPath() const { return mScreenshot; }
    QString statsPath() const { return mStats; }
    QStringList configOverrides() const { return mOverrides; }
    bool helpRequested() const { return mHelp; }

private:
    bool fail(const QString& message);

    QSize mSize{1280, 800};
    int mFrames = 0;
    QString mScreenshot;
    QString mStats;
    QStringList mOverrides;
    bool mHelp = false;
    QString mError;
};
