#include "FuzzEnvironment.h"

#include "Logger.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>

class QuietSink : public LogSink
{
public:
    void write(const LogRecord&) override {}
};

FuzzEnvironment& FuzzEnvironment::instance()
{
    static FuzzEnvironment environment;
    return environment;
}

FuzzEnvironment::FuzzEnvironment()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The debugging switch would turn every reported bad input into a crash.
    qunsetenv("ORBIS_ASSERT_ABORT");
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    mApp = new QGuiApplication(argc, argv);
    mSink = new QuietSink;
    Logger::setSink(mSink);
}

QString FuzzEnvironment::freshFolder()
{
    const QString folder = QDir(mScratch.path()).filePath(QString::number(mNextFolder++));
    QDir().mkpath(folder);
    return folder;
}

void FuzzEnvironment::write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(content);
}

void FuzzEnvironment::remove(const QString& folder)
{
    QDir(folder).removeRecursively();
}

void FuzzEnvironment::check(bool condition, const char* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "broken invariant: %s\n", what);
    std::abort();
}
