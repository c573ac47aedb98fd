#include "ScreenshotProcessor.h"

#include <Logger.h>

static const char* const kLogSource = "../../../gui/ScreenshotProcessor";

void ScreenshotProcessor::run()
{
    if (mPixels.save(mPath))
        ORBIS_INFO(QStringLiteral("Screenshot saved to %1").arg(mPath));
    else
        ORBIS_ERROR(QStringLiteral("Could not save screenshot to %1").arg(mPath));
}
