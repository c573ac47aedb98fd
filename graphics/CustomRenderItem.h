#pragma once

#include "RenderItem.h"

namespace gfx {

class CommandRenderItem;

// An item drawn by code outside the engine.
class CustomRenderItem : public RenderItem
{
public:
    CustomRenderItem() : RenderItem(kCustom, nullptr) {}
    virtual CommandRenderItem* customRenderItemCast() { return nullptr; }
};

} // namespace gfx
