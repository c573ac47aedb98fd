#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QImage>
#include <QSharedData>
#include <QSize>
#include <QString>

namespace gfx {

/// Where the pixels of a texture come from. Keys are compared by kind and cache key.
class ORBIS_UI_EXPORT TextureKeyData : public QSharedData
{
public:
    enum Type
    {
        kPixmap,
        kImage,
        kFile,
        kGlyph,
        kTarget,
        kShared,
    };

    virtual ~TextureKeyData() = default;
    virtual Type type() const = 0;
    virtual bool isNull() const = 0;
    virtual quint64 cacheKey() const = 0;
    virtual QImage image() const { return QImage(); }
    virtual QString filename() const { return QString(); }
    /// The texture's size in pixels, as far as it is known without uploading.
    virtual QSize size() const = 0;
    virtual bool operator==(const TextureKeyData& o) const
    {
        return type() == o.type() && cacheKey() == o.cacheKey();
    }
};

} // namespace gfx
