#pragma once

#include "OrbisUIFrameworkExport.h"

#include "CustomRenderItem.h"

namespace gfx {

class ICustomRenderer;
struct RenderState;

// Runs an ICustomRenderer (not owned: it must outlive every list that holds it).
class ORBIS_UI_INTERNAL_EXPORT CommandRenderItem : public CustomRenderItem
{
public:
    CommandRenderItem(ICustomRenderer* renderer, const QRect& target, const QRect& source,
                      const QMatrix4x4& matrix = QMatrix4x4())
        : mRenderer(renderer), mTarget(target), mSource(source), mMatrix(matrix)
    {}

    CommandRenderItem* customRenderItemCast() override { return this; }
    void run(const RenderState& state);

private:
    ICustomRenderer* mRenderer;
    QRect mTarget;
    QRect mSource;
    // From `mTarget`'s coordinates to the pass's item coordinates.
    QMatrix4x4 mMatrix;
};

} // namespace gfx
