#include "DemoOptions.h"

#include <QRegularExpression>

QString DemoOptions::usage()
{
    return QStringLiteral("usage: orbis-demo [--size WIDTHxHEIGHT] [--frames N] [--screenshot PATH]\n"
                          "                  [--stats PATH] [--set key=value]...\n");
}

bool DemoOptions::fail(const QString& message)
{
    mError = message;
    return false;
}

bool DemoOptions::parse(const QStringList& arguments)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& option = arguments[i];
        if (option == QLatin1String("--help") || option == QLatin1String("-h")) {
            mHelp = true;
            continue;
        }
        if (i + 1 >= arguments.size())
            return fail(QStringLiteral("%1 needs a value").arg(option));
        const QString value = arguments[++i];
        if (option == QLatin1String("--size")) {
            const QRegularExpressionMatch m =
                QRegularExpression(QStringLiteral("^([1-9][0-9]{0,4})x([1-9][0-9]{0,4})$")).match(value);
            if (!m.hasMatch())
                return fail(QStringLiteral("bad size: %1 (expected WIDTHxHEIGHT)").arg(value));
            mSize = QSize(m.captured(1).toInt(), m.captured(2).toInt());
        } else if (option == QLatin1String("--frames")) {
            bool ok = false;
            mFrames = value.toInt(&ok);
            if (!ok || mFrames < 1)
                return fail(QStringLiteral("bad frame count: %1").arg(value));
        } else if (option == QLatin1String("--screenshot")) {
            mScreenshot = value;
        } else if (option == QLatin1String("--stats")) {
            mStats = value;
        } else if (option == QLatin1String("--set")) {
            if (value.indexOf(QLatin1Char('=')) < 1)
                return fail(QStringLiteral("bad override: %1 (expected key=value)").arg(value));
            mOverrides << value;
        } else {
            return fail(QStringLiteral("unknown option: %1").arg(option));
        }
    }
    return true;
}
