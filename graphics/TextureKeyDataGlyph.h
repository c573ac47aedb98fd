#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TextureKeyData.h"

namespace gfx {

// A page of the glyph atlas; its texture belongs to the glyph cache.
class ORBIS_UI_INTERNAL_EXPORT TextureKeyDataGlyph : public TextureKeyData
{
public:
    TextureKeyDataGlyph(unsigned int page, const QSize& size, int depth)
        : mPage(page), mSize(size), mDepth(depth)
    {}

    Type type() const override { return kGlyph; }
    bool isNull() const override { return false; }
    quint64 cacheKey() const override { return mPage; }
    QSize size() const override { return mSize; }
    unsigned int page() const { return mPage; }
    // Bytes per pixel of the page.
    int depth() const { return mDepth; }

private:
    unsigned int mPage;
    QSize mSize;
    int mDepth;
};

} // namespace gfx
