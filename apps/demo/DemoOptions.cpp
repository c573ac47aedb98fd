#include "DemoOptions.h"

#include <QRegularExpression>

QString DemoOptions::usage()
{
    return QStringLiteral(
        "usage: orbis-demo [options]\n"
        "  --size WIDTHxHEIGHT      screen size (default 1280x800; 1280x720 for the scroll scene)\n"
        "  --scene NAME             first screen: home, map, settings, climate, or scroll\n"
        "                           (the scrolling benchmark scene); default home\n"
        "  --frames N               run N frames, then quit\n"
        "  --warmup N               run N frames more before those, reported apart (the first\n"
        "                           frame is always reported apart)\n"
        "  --idle                   the scroll scene holds still: nothing animates\n"
        "  --script FILE            play a touch script (lines of: time-ms touch down|move|up x y)\n"
        "  --screenshot PATH        write the last frame as a picture\n"
        "  --screenshot-every N     write every N-th frame as PATH-NNNNN.png (PATH from --screenshot,\n"
        "                           else orbis-demo)\n"
        "  --screens DIR            write one picture of each screen the run settles on\n"
        "  --stats PATH             write frame statistics per screen (JSON when PATH ends in .json)\n"
        "  --night                  start with the night skin\n"
        "  --real-time              follow the system clock; runs that end by themselves\n"
        "                           (--frames, --script) otherwise step by whole frames\n"
        "  --set key=value          override a configuration value (repeatable)\n"
        "  --help                   show this text\n");
}

QStringList DemoOptions::sceneNames()
{
    return {QStringLiteral("home"), QStringLiteral("map"), QStringLiteral("settings"),
            QStringLiteral("climate"), QStringLiteral("scroll")};
}

bool DemoOptions::fail(const QString& message)
{
    mError = message;
    return false;
}

bool DemoOptions::positiveInt(const QString& value, const QString& what, int* out)
{
    bool ok = false;
    const int number = value.toInt(&ok);
    if (!ok || number < 1)
        return fail(QStringLiteral("bad %1: %2").arg(what, value));
    *out = number;
    return true;
}

bool DemoOptions::parse(const QStringList& arguments)
{
    static const QStringList kSwitches = {QStringLiteral("--help"), QStringLiteral("-h"),
                                          QStringLiteral("--night"), QStringLiteral("--real-time"),
                                          QStringLiteral("--idle")};
    static const QStringList kValued = {QStringLiteral("--size"),       QStringLiteral("--scene"),
                                        QStringLiteral("--frames"),     QStringLiteral("--script"),
                                        QStringLiteral("--screenshot"), QStringLiteral("--screenshot-every"),
                                        QStringLiteral("--screens"),    QStringLiteral("--stats"),
                                        QStringLiteral("--set"),        QStringLiteral("--warmup")};
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& option = arguments[i];
        if (kSwitches.contains(option)) {
            if (option == QLatin1String("--night"))
                mNight = true;
            else if (option == QLatin1String("--real-time"))
                mRealTime = true;
            else if (option == QLatin1String("--idle"))
                mIdle = true;
            else
                mHelp = true;
            continue;
        }
        if (!kValued.contains(option))
            return fail(QStringLiteral("unknown option: %1").arg(option));
        if (i + 1 >= arguments.size())
            return fail(QStringLiteral("%1 needs a value").arg(option));
        const QString value = arguments[++i];
        if (option == QLatin1String("--size")) {
            const QRegularExpressionMatch m =
                QRegularExpression(QStringLiteral("^([1-9][0-9]{0,4})x([1-9][0-9]{0,4})$")).match(value);
            if (!m.hasMatch())
                return fail(QStringLiteral("bad size: %1 (expected WIDTHxHEIGHT)").arg(value));
            mSize = QSize(m.captured(1).toInt(), m.captured(2).toInt());
            mSizeGiven = true;
        } else if (option == QLatin1String("--scene")) {
            if (!sceneNames().contains(value))
                return fail(QStringLiteral("unknown scene: %1 (expected %2)")
                                .arg(value, sceneNames().join(QStringLiteral(", "))));
            mScene = value;
            if (!mSizeGiven && mScene == QLatin1String("scroll"))
                mSize = QSize(1280, 720);
            else if (!mSizeGiven)
                mSize = QSize(1280, 800);
        } else if (option == QLatin1String("--frames")) {
            if (!positiveInt(value, QStringLiteral("frame count"), &mFrames))
                return false;
        } else if (option == QLatin1String("--warmup")) {
            bool ok = false;
            mWarmup = value.toInt(&ok);
            if (!ok || mWarmup < 0)
                return fail(QStringLiteral("bad warm-up frame count: %1").arg(value));
        } else if (option == QLatin1String("--screenshot-every")) {
            if (!positiveInt(value, QStringLiteral("screenshot interval"), &mScreenshotEvery))
                return false;
        } else if (option == QLatin1String("--script")) {
            mScript = value;
        } else if (option == QLatin1String("--screenshot")) {
            mScreenshot = value;
        } else if (option == QLatin1String("--screens")) {
            mScreens = value;
        } else if (option == QLatin1String("--stats")) {
            mStats = value;
        } else {
            if (value.indexOf(QLatin1Char('=')) < 1)
                return fail(QStringLiteral("bad override: %1 (expected key=value)").arg(value));
            mOverrides << value;
        }
    }
    if (mWarmup > 0 && mFrames == 0)
        return fail(QStringLiteral("--warmup needs --frames"));
    if (mIdle && mScene != QLatin1String("scroll"))
        return fail(QStringLiteral("--idle needs --scene scroll"));
    return true;
}
