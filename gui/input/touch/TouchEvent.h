#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TouchState.h"

#include <QPoint>
#include <QtGlobal>

/// One raw event from a touch driver, stamped on the framework clock when queued.
struct ORBIS_UI_EXPORT TouchEvent
{
    int id = 0;
    TouchState state = TouchIdle;
    QPoint point;
    qint64 timeMs = 0;
};
