#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TouchDriver.h"
#include "TouchScript.h"

// Plays a touch script as if a controller sent it. The script's clock starts at
// the first call of queueDueEvents; each call queues the steps whose time has come, stamped with
// their own time on the framework clock, so velocities and multi-tap windows see
// the script's timing whatever the frame rate.
class ORBIS_UI_INTERNAL_EXPORT ScriptTouchDriver : public TouchDriver
{
public:
    // Script touch n arrives as touch firstId + n.
    explicit ScriptTouchDriver(const TouchScript& script, int firstId = 0);

    void queueDueEvents() override;
    bool isStarted() const { return mStartMs >= 0; }
    bool isFinished() const { return mNext >= mScript.steps().size(); }
    // The framework clock at the first call of queueDueEvents (-1 before).
    qint64 startedAtMs() const { return mStartMs; }
    int playedSteps() const { return mNext; }
    const TouchScript& script() const { return mScript; }

private:
    TouchScript mScript;
    int mFirstId;
    int mNext = 0;
    qint64 mStartMs = -1;
};
