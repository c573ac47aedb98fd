#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TextureKeyDataCached.h"

namespace gfx {

/// A texture of a QImage's pixels; keys of one image (by its cache key) share
/// one texture.
class ORBIS_UI_EXPORT TextureKeyDataQImage : public TextureKeyDataCached
{
public:
    TextureKeyDataQImage(const QImage& image, TextureFeatures features)
        : TextureKeyDataCached(features), mImage(image)
    {}

    Type type() const override { return kImage; }
    bool isNull() const override { return mImage.isNull(); }
    quint64 cacheKey() const override { return quint64(mImage.cacheKey()); }
    QImage image() const override { return mImage; }
    QSize size() const override { return mImage.size(); }

private:
    QImage mImage;
};

} // namespace gfx
