// Touch scripts as the demo and tests replay them: parsed, and when accepted,
// written out and read back, and played through the script driver on a stepped
// clock, which must turn every step into exactly one press, move or release at the
// step's time.

#include "FuzzEnvironment.h"
#include "ManualClock.h"
#include "input/touch/ScriptTouchDriver.h"
#include "input/touch/TouchScript.h"

#include <QSet>

namespace {

void play(const TouchScript& script)
{
    ManualClock clock(0);
    ScriptTouchDriver driver(script);
    const QVector<TouchScript::Step>& steps = script.steps();
    QSet<int> down;
    int seen = 0;
    // The script's clock starts at the first frame, at 0; then a frame comes at each
    // step's time, when everything due then, and nothing later, must arrive.
    for (qint64 now = 0;; now = steps[driver.playedSteps()].timeMs) {
        clock.setMs(now);
        driver.queueDueEvents();
        for (const TouchEvent& event : driver.getEvents()) {
            FuzzEnvironment::check(seen < steps.size(), "no event without a step");
            const TouchScript::Step& step = steps[seen++];
            FuzzEnvironment::check(event.id == step.touch && event.point == step.point &&
                                       event.timeMs == now && step.timeMs == now,
                                   "an event is its step, at the step's time");
            const TouchState expected = step.action == TouchScript::Down   ? TouchTouched
                                        : step.action == TouchScript::Move ? TouchMoved
                                                                           : TouchReleased;
            FuzzEnvironment::check(event.state == expected, "an event has its step's action");
            if (expected == TouchTouched)
                down.insert(step.touch);
            else if (expected == TouchReleased)
                down.remove(step.touch);
        }
        FuzzEnvironment::check(seen == driver.playedSteps(), "every step played is queued");
        if (driver.isFinished())
            break;
        FuzzEnvironment::check(steps[driver.playedSteps()].timeMs > now, "every step due is played");
    }
    FuzzEnvironment::check(seen == steps.size(), "every step is played");
    FuzzEnvironment::check(down.isEmpty(), "every touch is up at the end");
}

QByteArray written(const TouchScript& script)
{
    QByteArray text;
    for (const TouchScript::Step& step : script.steps())
        text += QStringLiteral("%1 %2 %3 %4 %5\n")
                    .arg(step.timeMs)
                    .arg(step.touch)
                    .arg(TouchScript::actionName(step.action))
                    .arg(step.point.x())
                    .arg(step.point.y())
                    .toLatin1();
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzEnvironment::instance();
    TouchScript script;
    const QByteArray text = FuzzEnvironment::bytes(data, size);
    if (!script.parse(text)) {
        FuzzEnvironment::check(script.isEmpty(), "a refused script has no steps");
        FuzzEnvironment::check(!script.error().isEmpty(), "a refused script says why");
        FuzzEnvironment::check(script.errorLine() >= 0 && script.errorLine() <= text.count('\n') + 1,
                               "the error names a line of the script");
        return 0;
    }
    FuzzEnvironment::check(script.error().isEmpty(), "an accepted script has no error");
    TouchScript again;
    FuzzEnvironment::check(again.parse(written(script)) && again.steps() == script.steps(),
                           "an accepted script written out reads back the same");
    play(script);
    return 0;
}
