#include "ScreenshotProcessor.h"

#include <Logger.h>

void ScreenshotProcessor::run()
{
    if (mPixels.save(mPath))
        Logger::info(QStringLiteral("Screenshot saved to %1").arg(mPath));
    else
        Logger::error(QStringLiteral("Could not save screenshot to %1").arg(mPath));
}
