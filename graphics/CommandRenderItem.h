#pragma once

#include "CustomRenderItem.h"

namespace gfx {

class ICustomRenderer;
struct RenderState;

// Runs an ICustomRenderer (not owned: it must outlive every list that holds it).
class CommandRenderItem : public CustomRenderItem
{
public:
    CommandRenderItem(ICustomRenderer* renderer, const QRect& target, const QRect& source)
        : mRenderer(renderer), mTarget(target), mSource(source)
    {}

    CommandRenderItem* customRenderItemCast() override { return this; }
    void run(const RenderState& state);

private:
    ICustomRenderer* mRenderer;
    QRect mTarget;
    QRect mSource;
};

} // namespace gfx
