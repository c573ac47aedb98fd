#include "ScriptTouchDriver.h"

#include "Clock.h"

ScriptTouchDriver::ScriptTouchDriver(const TouchScript& script, int firstId)
    : mScript(script), mFirstId(firstId)
{}

void ScriptTouchDriver::queueDueEvents()
{
    const qint64 now = Clock::current()->nowMilliseconds();
    if (mStartMs < 0)
        mStartMs = now;
    const QVector<TouchScript::Step>& steps = mScript.steps();
    while (mNext < steps.size() && mStartMs + steps[mNext].timeMs <= now) {
        const TouchScript::Step& step = steps[mNext++];
        queueEvent(mFirstId + step.touch, step.action != TouchScript::Up, step.point.x(), step.point.y(),
                   mStartMs + step.timeMs);
    }
}
