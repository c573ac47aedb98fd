#pragma once

#include "OrbisUIFrameworkExport.h"

#include "GraphicsPaintEngine.h"

#include <QPaintDevice>
#include <QSize>

namespace gfx {

// A surface of a given size whose painters record render items through their own
// GraphicsPaintEngine, so that any view's draw(QPainter&) ends in a display list.
// Text is measured at the screen's logical resolution, as in images.
class ORBIS_UI_INTERNAL_EXPORT GraphicsPaintDevice : public QPaintDevice
{
public:
    explicit GraphicsPaintDevice(const QSize& size, const QRegion& clip = QRegion(),
                                 GraphicsPaintEngine::OptionFlags flags = GraphicsPaintEngine::NoOptions);
    ~GraphicsPaintDevice() override;

    QPaintEngine* paintEngine() const override { return mEngine.get(); }
    GraphicsPaintEngine* engine() const { return mEngine.get(); }
    QSize size() const { return mSize; }

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QSize mSize;
    std::unique_ptr<GraphicsPaintEngine> mEngine;
};

} // namespace gfx
