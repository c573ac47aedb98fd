#include "TextureKeyDataShared.h"

#include "SharedTexturePage.h"

namespace gfx {

quint64 TextureKeyDataShared::cacheKey() const
{
    return mSlot.isNull() ? 0 : mSlot.data()->page->uid();
}

} // namespace gfx
