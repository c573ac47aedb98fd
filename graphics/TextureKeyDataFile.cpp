#include "TextureKeyDataFile.h"

#include "KtxFile.h"

#include <QFile>
#include <QImageReader>

namespace gfx {

TextureKeyDataFile::TextureKeyDataFile(const QString& fileName, TextureFeatures features)
    : TextureKeyDataCached(features), mFileName(fileName), mCacheKey((quint64(1) << 63) | qHash(fileName))
{}

QImage TextureKeyDataFile::image() const
{
    return QImage(mFileName);
}

QSize TextureKeyDataFile::size() const
{
    if (isKtx()) {
        QFile file(mFileName);
        KtxFile ktx;
        if (file.open(QIODevice::ReadOnly) && ktx.parseHeader(file.read(KtxFile::kHeaderSize)))
            return QSize(ktx.width(), ktx.height());
        return QSize();
    }
    return QImageReader(mFileName).size();
}

} // namespace gfx
