#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QByteArray>
#include <QPoint>
#include <QString>
#include <QVector>

// A recorded or written sequence of touches, one event a line:
//
//     # time(ms) touch action x y
//     0     0 down 640 400
//     16    0 move 600 400
//     32    0 up   600 400
//
// Times count from the start of the script and never go back; touches are 0 to
// kMaxTouch; a touch goes down before it moves or lifts, and every touch is up
// at the end. Blank lines and text after "#" are ignored. Used to replay input
// deterministically through a touch driver.
class ORBIS_UI_INTERNAL_EXPORT TouchScript
{
public:
    enum Action
    {
        Down,
        Move,
        Up
    };
    struct Step
    {
        qint64 timeMs = 0;
        int touch = 0;
        Action action = Down;
        QPoint point;
        bool operator==(const Step& other) const
        {
            return timeMs == other.timeMs && touch == other.touch && action == other.action &&
                   point == other.point;
        }
    };

    static constexpr int kMaxTouch = 9;
    static constexpr int kMaxCoordinate = 32767;
    static constexpr qint64 kMaxTimeMs = 24 * 3600 * 1000;

    // Parses a whole script. On failure the script is empty and error() says where
    // and why ("line 3: unknown action 'press' (expected down, move or up)").
    bool parse(const QByteArray& text);
    // Reads and parses a file; a file that cannot be read is an error too.
    bool load(const QString& path);

    const QVector<Step>& steps() const { return mSteps; }
    bool isEmpty() const { return mSteps.isEmpty(); }
    // The time of the last step.
    qint64 durationMs() const { return mSteps.isEmpty() ? 0 : mSteps.last().timeMs; }
    const QString& error() const { return mError; }
    // The line of the error, from 1 (0 when the error is not about a line).
    int errorLine() const { return mErrorLine; }

    static QString actionName(Action action);

private:
    bool fail(int line, const QString& message);

    QVector<Step> mSteps;
    QString mError;
    int mErrorLine = 0;
};
