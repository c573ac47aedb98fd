#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TextureKeyDataCached.h"

#include <QPixmap>

namespace gfx {

/// A texture of a QPixmap's pixels; keys of one pixmap (by its cache key) share
/// one texture.
class ORBIS_UI_EXPORT TextureKeyDataQPixmap : public TextureKeyDataCached
{
public:
    TextureKeyDataQPixmap(const QPixmap& pixmap, TextureFeatures features)
        : TextureKeyDataCached(features), mPixmap(pixmap)
    {}

    Type type() const override { return kPixmap; }
    bool isNull() const override { return mPixmap.isNull(); }
    quint64 cacheKey() const override { return quint64(mPixmap.cacheKey()); }
    QImage image() const override { return mPixmap.toImage(); }
    QSize size() const override { return mPixmap.size(); }

private:
    QPixmap mPixmap;
};

} // namespace gfx
