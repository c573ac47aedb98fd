#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

class QGuiApplication;
class QuietSink;

// What every fuzz target needs once per process: an offscreen application (fonts,
// image readers), a logger that drops messages (bad input is expected to be
// reported, and printing it would be most of the work), and a scratch folder.
class FuzzEnvironment
{
public:
    static FuzzEnvironment& instance();

    // A fresh folder under the scratch folder, for one input. Files the settings
    // reader has seen are cached by path, size and time stamp: a new path per
    // input keeps one input's file from standing in for the next one's.
    QString freshFolder();
    // Writes a file, creating or replacing it.
    static void write(const QString& path, const QByteArray& content);
    // Removes a folder made by freshFolder() with everything in it.
    static void remove(const QString& folder);

    // A broken invariant: reported, then the process aborts so that the fuzzer
    // keeps the input (and a corpus replay fails).
    static void check(bool condition, const char* what);

    static QByteArray bytes(const uint8_t* data, size_t size)
    {
        return QByteArray(reinterpret_cast<const char*>(data), int(size));
    }

private:
    FuzzEnvironment();

    QGuiApplication* mApp;
    QuietSink* mSink;
    QTemporaryDir mScratch;
    quint64 mNextFolder = 0;
};
