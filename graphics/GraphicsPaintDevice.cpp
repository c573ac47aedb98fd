#include "GraphicsPaintDevice.h"

#include <QGuiApplication>
#include <QScreen>

namespace gfx {

namespace {
// Fonts are sized as for images, by the screen's logical resolution.
int screenDpi()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? qRound(screen->logicalDotsPerInchY()) : 96;
}
} // namespace

GraphicsPaintDevice::GraphicsPaintDevice(const QSize& size, const QRegion& clip,
                                         GraphicsPaintEngine::OptionFlags flags)
    : mSize(size), mEngine(std::make_unique<GraphicsPaintEngine>(clip, flags))
{}

GraphicsPaintDevice::~GraphicsPaintDevice() = default;

int GraphicsPaintDevice::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return mSize.width();
    case PdmHeight:
        return mSize.height();
    case PdmWidthMM:
        return qRound(mSize.width() * 25.4 / screenDpi());
    case PdmHeightMM:
        return qRound(mSize.height() * 25.4 / screenDpi());
    case PdmNumColors:
        return 0;
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return screenDpi();
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    }
    return 0;
}

} // namespace gfx
