#include "CommandRenderItem.h"

#include "GLStateManager.h"
#include "ICustomRenderer.h"

namespace gfx {

void CommandRenderItem::run(const RenderState& state)
{
    if (!mRenderer)
        return;
    mRenderer->render(state, mTarget, mSource);
    GLStateManager::instance()->clearToInvalid();
}

} // namespace gfx
