#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TextureKeyDataCached.h"

namespace gfx {

/// A texture read from an image file, or uploaded as it is from a KTX file
/// (compressed formats included).
class ORBIS_UI_EXPORT TextureKeyDataFile : public TextureKeyDataCached
{
public:
    TextureKeyDataFile(const QString& fileName, TextureFeatures features);

    Type type() const override { return kFile; }
    bool isNull() const override { return mFileName.isEmpty(); }
    /// The top bit keeps file keys apart from pixmap and image keys.
    quint64 cacheKey() const override { return mCacheKey; }
    QImage image() const override;
    QString filename() const override { return mFileName; }
    QSize size() const override;
    bool isKtx() const { return mFileName.endsWith(QLatin1String(".ktx"), Qt::CaseInsensitive); }

private:
    QString mFileName;
    quint64 mCacheKey;
};

} // namespace gfx
