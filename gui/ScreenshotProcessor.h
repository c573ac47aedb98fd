#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QImage>
#include <QRunnable>
#include <QString>

// Writes captured frame pixels to an image file off the GUI thread. It holds only
// the pixels, never a view, so it may run while the next frames are drawn.
class ORBIS_UI_INTERNAL_EXPORT ScreenshotProcessor : public QRunnable
{
public:
    ScreenshotProcessor(const QImage& pixels, const QString& path) : mPixels(pixels), mPath(path) {}

    void run() override;

private:
    QImage mPixels;
    QString mPath;
};
