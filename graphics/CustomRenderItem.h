#pragma once

#include "OrbisUIFrameworkExport.h"
#include "RenderItem.h"

namespace gfx {

class CommandRenderItem;

/// An item drawn by code outside the engine.
class ORBIS_UI_EXPORT CustomRenderItem : public RenderItem
{
public:
    CustomRenderItem() : RenderItem(kCustom, nullptr) {}
    virtual CommandRenderItem* customRenderItemCast() { return nullptr; }
};

} // namespace gfx
