#pragma once

#include "OrbisUIFrameworkExport.h"

#include "SharedTextureSlot.h"
#include "TextureKeyData.h"

namespace gfx {

// A slot of a shared atlas page: binds the page. Keys compare by page, so that
// neighbours drawn from one page can share a draw.
class ORBIS_UI_INTERNAL_EXPORT TextureKeyDataShared : public TextureKeyData
{
public:
    explicit TextureKeyDataShared(const SharedTextureSlot& slot) : mSlot(slot) {}

    Type type() const override { return kShared; }
    bool isNull() const override { return mSlot.isNull(); }
    quint64 cacheKey() const override;
    QSize size() const override { return mSlot.pageSize(); }
    const SharedTextureSlot& slot() const { return mSlot; }

private:
    SharedTextureSlot mSlot;
};

} // namespace gfx
