#include "PeerOptions.h"

#include <QTextStream>

QString PeerOptions::usage(const QString& program)
{
    return QStringLiteral("usage: %1 [options]\n"
                          "  --frames N        measured frames after the warm-up (default 600)\n"
                          "  --warmup N        frames run before measuring, the first included (default 60)\n"
                          "  --idle            nothing animates; every frame is still requested\n"
                          "  --stats PATH      write the frame statistics as JSON\n"
                          "  --screenshot PATH write the last frame as a picture\n"
                          "  --heap N          print heap bytes per row and per plain item over N of each\n"
                          "  --help            show this text\n")
        .arg(program);
}

bool PeerOptions::fail(const QString& message)
{
    mError = message;
    return false;
}

bool PeerOptions::parse(const QStringList& arguments)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& option = arguments[i];
        if (option == QLatin1String("--help") || option == QLatin1String("-h")) {
            mHelp = true;
            continue;
        }
        if (option == QLatin1String("--idle")) {
            mIdle = true;
            continue;
        }
        const bool number = option == QLatin1String("--frames") || option == QLatin1String("--warmup") ||
                            option == QLatin1String("--heap");
        if (!number && option != QLatin1String("--stats") && option != QLatin1String("--screenshot"))
            return fail(QStringLiteral("unknown option: %1").arg(option));
        if (i + 1 >= arguments.size())
            return fail(QStringLiteral("%1 needs a value").arg(option));
        const QString value = arguments[++i];
        if (option == QLatin1String("--stats")) {
            mStats = value;
            continue;
        }
        if (option == QLatin1String("--screenshot")) {
            mScreenshot = value;
            continue;
        }
        bool ok = false;
        const int n = value.toInt(&ok);
        // A warm-up may be empty; a run or a heap count may not.
        if (!ok || n < (option == QLatin1String("--warmup") ? 0 : 1))
            return fail(QStringLiteral("bad %1: %2").arg(option, value));
        if (option == QLatin1String("--frames"))
            mFrames = n;
        else if (option == QLatin1String("--warmup"))
            mWarmup = n;
        else
            mHeap = n;
    }
    return true;
}

int PeerOptions::parse(int argc, char** argv, const QString& program)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    if (!parse(arguments)) {
        QTextStream(stderr) << program << ": " << mError << '\n' << usage(program);
        return 2;
    }
    if (mHelp) {
        QTextStream(stdout) << usage(program);
        return 0;
    }
    return -1;
}
