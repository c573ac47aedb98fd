#include "CommandRenderItem.h"

#include "GLStateManager.h"
#include "ICustomRenderer.h"
#include "RenderState.h"

namespace gfx {

void CommandRenderItem::run(const RenderState& state)
{
    if (!mRenderer)
        return;
    if (mMatrix.isIdentity()) {
        mRenderer->render(state, mTarget, mSource);
    } else {
        RenderState placed = state;
        placed.matrix *= mMatrix;
        mRenderer->render(placed, mTarget, mSource);
    }
    GLStateManager::instance()->clearToInvalid();
}

} // namespace gfx
