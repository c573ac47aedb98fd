#pragma once

#include "OrbisUIFrameworkExport.h"
#include "ShaderUsage.h"

#include <QRect>
#include <memory>

namespace gfx {

/// One GL draw or one nested list, in device coordinates.
class ORBIS_UI_EXPORT RenderItem
{
public:
    enum Type : quint32
    {
        kDisplayList = 1,
        kGeometry = 2,
        kCustom = 3,
        kSlice = 4,
        /// Passed over by the optimiser.
        kSkipped = 5,
    };

    RenderItem(quint32 itemType, ShaderUsage* usage) : shaderUsage(usage), type(itemType) {}
    virtual ~RenderItem() = default;
    RenderItem(const RenderItem&) = delete;
    RenderItem& operator=(const RenderItem&) = delete;

    /// Sets the rectangles from the item's own: `bounds` through the usage's
    /// matrix, `opaqueRect` only where the matrix keeps rectangles rectangular.
    void computeRects(const QRect& local, const QRect& opaqueArea);
    /// The same through `matrix`, for items whose usage carries none.
    void computeRects(const QRect& local, const QRect& opaqueArea, const QMatrix4x4& matrix);

    /// `rect` through `matrix`, widened to every pixel that it touches.
    static QRect mappedBounds(const QMatrix4x4& matrix, const QRect& rect);
    /// `rect` through `matrix` (which keeps rectangles rectangular), narrowed to
    /// the pixels that lie wholly inside it.
    static QRect mappedInterior(const QMatrix4x4& matrix, const QRect& rect);

    std::unique_ptr<ShaderUsage> shaderUsage;
    QRect opaqueRect;
    QRect bounds;
    QRect localBounds;
    quint32 type;
};

} // namespace gfx
