#include "DisplayListRenderItem.h"

#include "DisplayList.h"
#include "IndirectShaderUsage.h"

namespace gfx {

DisplayListRenderItem::DisplayListRenderItem(const TExplicitlySharedDataPointer<DisplayList>& l,
                                             const QRect& t, const QRect& s, bool b)
    : RenderItem(kDisplayList, new IndirectShaderUsage(b)), list(l), target(t), source(s), blend(b)
{}

DisplayListRenderItem::~DisplayListRenderItem() = default;

} // namespace gfx
