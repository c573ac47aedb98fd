#include "TouchScript.h"

#include <QFile>

namespace {
// A decimal integer without sign or spaces, within [0, max].
bool parseNumber(const QByteArray& token, qint64 max, qint64* value)
{
    if (token.isEmpty() || token.size() > 18)
        return false;
    qint64 result = 0;
    for (const char c : token) {
        if (c < '0' || c > '9')
            return false;
        result = result * 10 + (c - '0');
    }
    if (result > max)
        return false;
    *value = result;
    return true;
}

QString quoted(const QByteArray& token)
{
    return QLatin1Char('\'') + QString::fromUtf8(token) + QLatin1Char('\'');
}
} // namespace

QString TouchScript::actionName(Action action)
{
    switch (action) {
    case Down:
        return QStringLiteral("down");
    case Move:
        return QStringLiteral("move");
    case Up:
        return QStringLiteral("up");
    }
    return QString();
}

bool TouchScript::fail(int line, const QString& message)
{
    mSteps.clear();
    mErrorLine = line;
    mError = line > 0 ? QStringLiteral("line %1: %2").arg(line).arg(message) : message;
    return false;
}

bool TouchScript::parse(const QByteArray& text)
{
    mSteps.clear();
    mError.clear();
    mErrorLine = 0;
    quint32 down = 0;
    int downSince[kMaxTouch + 1] = {};
    const QList<QByteArray> lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const int line = i + 1;
        QByteArray content = lines[i];
        const int hash = content.indexOf('#');
        if (hash >= 0)
            content.truncate(hash);
        const QList<QByteArray> tokens = content.simplified().split(' ');
        if (tokens.size() == 1 && tokens[0].isEmpty())
            continue;
        if (tokens.size() != 5)
            return fail(line, QStringLiteral("expected 'time touch action x y', found %1 field%2")
                                  .arg(tokens.size())
                                  .arg(tokens.size() == 1 ? "" : "s"));
        Step step;
        qint64 number = 0;
        if (!parseNumber(tokens[0], kMaxTimeMs, &number))
            return fail(
                line,
                QStringLiteral("bad time %1 (expected 0 to %2 ms)").arg(quoted(tokens[0])).arg(kMaxTimeMs));
        step.timeMs = number;
        if (!mSteps.isEmpty() && step.timeMs < mSteps.last().timeMs)
            return fail(line, QStringLiteral("time %1 is before the previous event's %2")
                                  .arg(step.timeMs)
                                  .arg(mSteps.last().timeMs));
        if (!parseNumber(tokens[1], kMaxTouch, &number))
            return fail(
                line,
                QStringLiteral("bad touch %1 (expected 0 to %2)").arg(quoted(tokens[1])).arg(kMaxTouch));
        step.touch = int(number);
        const QByteArray action = tokens[2];
        if (action == "down")
            step.action = Down;
        else if (action == "move")
            step.action = Move;
        else if (action == "up")
            step.action = Up;
        else
            return fail(line,
                        QStringLiteral("unknown action %1 (expected down, move or up)").arg(quoted(action)));
        qint64 x = 0;
        qint64 y = 0;
        if (!parseNumber(tokens[3], kMaxCoordinate, &x))
            return fail(
                line,
                QStringLiteral("bad x %1 (expected 0 to %2)").arg(quoted(tokens[3])).arg(kMaxCoordinate));
        if (!parseNumber(tokens[4], kMaxCoordinate, &y))
            return fail(
                line,
                QStringLiteral("bad y %1 (expected 0 to %2)").arg(quoted(tokens[4])).arg(kMaxCoordinate));
        step.point = QPoint(int(x), int(y));

        const quint32 bit = 1u << step.touch;
        if (step.action == Down) {
            if (down & bit)
                return fail(line, QStringLiteral("touch %1 is already down (since line %2)")
                                      .arg(step.touch)
                                      .arg(downSince[step.touch]));
            down |= bit;
            downSince[step.touch] = line;
        } else {
            if (!(down & bit))
                return fail(line, QStringLiteral("touch %1 is not down").arg(step.touch));
            if (step.action == Up)
                down &= ~bit;
        }
        mSteps.append(step);
    }
    for (int touch = 0; touch <= kMaxTouch; ++touch) {
        if (down & (1u << touch))
            return fail(downSince[touch], QStringLiteral("touch %1 goes down here and never up").arg(touch));
    }
    return true;
}

bool TouchScript::load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        mSteps.clear();
        mErrorLine = 0;
        mError = QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        return false;
    }
    return parse(file.readAll());
}
