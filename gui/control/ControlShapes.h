#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayImage.h"

#include <QColor>
#include <QPointF>

class QPainter;

// The shapes controls are drawn with, rasterised once per size and colour with
// anti-aliased edges and shared by every control: afterwards a frame draws them as
// textures, the fastest thing the GPU does. GUI thread only.
class ORBIS_UI_INTERNAL_EXPORT ControlShapes
{
public:
    // A rounded rectangle as a nine-patch: the corners keep their radius at any
    // size. A stroke, when given, runs inside the edge.
    static DisplayImage roundedRect(int radius, const QColor& fill, const QColor& stroke = QColor(),
                                    int strokeWidth = 0);
    // A disc of `diameter` with a soft shadow below it; the picture is larger than
    // the disc by `shadowMargin()` on every side.
    static DisplayImage knob(int diameter, const QColor& fill, const QColor& shadow);
    static int shadowMargin() { return 4; }
    // A one-colour picture (see DisplayImage::isMonochrome) in another colour, with
    // its cuts and fill; other pictures come back as they are.
    static DisplayImage tinted(const DisplayImage& image, const QColor& color);
    // The knob of a switch or slider centred on `center`; a pressed knob wears a halo.
    static void drawKnob(QPainter& painter, const QPointF& center, int diameter, bool pressed);
    // Drops every picture (their textures go once nothing draws them).
    static void clear();
    static int cachedCount();

private:
    static QImage roundedRectPixels(int radius, const QColor& fill, const QColor& stroke, int strokeWidth);
    static QImage knobPixels(int diameter, const QColor& fill, const QColor& shadow);
};
