#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TouchState.h"
#include "TouchVelocity.h"

#include "DisplayView.h"

#include <QPoint>
#include <QPointer>
#include <QTimer>

/// What the dispatcher knows about one touch identifier. The press history (time,
/// point, tap count, thresholds) outlives the touch so that the next press can be
/// recognised as a multi-tap; everything else is reset when the touch ends.
class ORBIS_UI_EXPORT TouchInfo
{
public:
    static constexpr int kNoPair = -2;

    TouchInfo();
    TouchInfo(const TouchInfo&) = delete;
    TouchInfo& operator=(const TouchInfo&) = delete;

    bool isLive() const { return state != TouchIdle; }
    bool isPending() const { return state == TouchPending; }
    /// Forgets the finger (owner, pair, state, samples) but keeps the press history.
    void reset();
    void startTouchDelayTimer();

    DisplayView* view = nullptr;
    TouchState state = TouchIdle;
    TouchState previousState = TouchIdle;
    int tapCount = 0;
    int pair = kNoPair;
    QPoint pressPoint;
    QPoint currentPoint;
    QPoint previousPoint;
    QPoint gesturePoint;
    int tapTimeThreshold = 0;
    int dragDistanceThreshold = 0;
    bool tapAnimation = false;
    bool useTapTimer = false;
    bool touchDelayTimerRunning = false;
    /// Whether the owner was already given touched() for this press.
    bool delivered = false;
    /// Framework clock readings (milliseconds) of this press and the one before; -1: none.
    qint64 pressTimeMs = -1;
    qint64 previousPressTimeMs = -1;
    /// The pair's finger distance and angle at the last pinch or rotate step.
    double pairDistance = 0;
    double pairAngle = 0;
    /// A tap waiting for the multi-tap window to close (see setUseTapTimer).
    QPointer<DisplayView> tapView;
    QPoint tapPoint;
    TouchVelocity velocity;
    QTimer touchDelayTimer;
};
