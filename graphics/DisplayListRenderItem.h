#pragma once

#include "OrbisUIFrameworkExport.h"

#include "RenderItem.h"

#include <TExplicitlySharedDataPointer.h>

namespace gfx {

class DisplayList;

// A nested display list: its `source` rectangle drawn into `target`.
class ORBIS_UI_INTERNAL_EXPORT DisplayListRenderItem : public RenderItem
{
public:
    DisplayListRenderItem(const TExplicitlySharedDataPointer<DisplayList>& list, const QRect& target,
                          const QRect& source, bool blend);
    ~DisplayListRenderItem() override;

    TExplicitlySharedDataPointer<DisplayList> list;
    QRect target;
    QRect source;
    bool blend;
};

} // namespace gfx
