#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TextureCache.h"
#include "TextureFeature.h"
#include "TextureKeyData.h"

#include <memory>

namespace gfx {

/// The kinds of key whose textures live in the cache's size-bounded store. Once
/// bound, the key keeps its entry alive, so that an evicted texture still draws.
class ORBIS_UI_EXPORT TextureKeyDataCached : public TextureKeyData
{
public:
    explicit TextureKeyDataCached(TextureFeatures features) : mFeatures(features) {}

    TextureFeatures features() const { return mFeatures; }
    const std::shared_ptr<TextureCache::TextureEntry>& entry() const { return mEntry; }
    void setEntry(const std::shared_ptr<TextureCache::TextureEntry>& entry) { mEntry = entry; }
    void releaseEntry() { mEntry.reset(); }

private:
    TextureFeatures mFeatures;
    std::shared_ptr<TextureCache::TextureEntry> mEntry;
};

} // namespace gfx
