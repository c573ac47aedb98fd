#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QByteArray>
#include <QString>
#include <QVector>
#include <qopengl.h>

namespace gfx {

// Reader of the KTX 1.1 texture container: header, key/value block skipped, then
// per mip level the image size and the faces' pixels, each padded to four bytes.
// Either byte order is accepted. Array and 3D textures are refused, and so are
// uncompressed formats GLES 2 lacks and levels shorter than their size needs.
class ORBIS_UI_INTERNAL_EXPORT KtxFile
{
public:
    static constexpr int kHeaderSize = 64;

    // Parses the header only (enough for the size); false with errorString() set.
    bool parseHeader(const QByteArray& header);
    // Parses a whole file, copying out the pixels of every level and face.
    bool parse(const QByteArray& data);

    const QString& errorString() const { return mError; }
    int width() const { return int(mWidth); }
    int height() const { return int(mHeight); }
    bool isCompressed() const { return mGlType == 0; }
    bool isCube() const { return mFaces == 6; }
    quint32 glType() const { return mGlType; }
    quint32 glFormat() const { return mGlFormat; }
    quint32 glInternalFormat() const { return mGlInternalFormat; }
    int levelCount() const { return mLevels.size(); }
    int faceCount() const { return int(mFaces); }
    // The pixels of one face of one level (byte order already native).
    const QByteArray& image(int level, int face) const { return mLevels[level][face]; }
    quint64 totalBytes() const;

    // Bytes of one pixel of an uncompressed format and type that GLES 2 takes,
    // 0 for any other combination.
    static int pixelBytes(quint32 format, quint32 type);

private:
    static constexpr quint32 kHalfFloat = 0x8D61; // GL_HALF_FLOAT_OES

    // Bytes of one face of an uncompressed level, rows padded to four bytes.
    quint64 levelBytes(quint32 level) const;
    bool fail(const QString& error);
    quint32 word(const char* p) const;

    QString mError;
    bool mSwap = false;
    quint32 mGlType = 0;
    quint32 mGlTypeSize = 0;
    quint32 mGlFormat = 0;
    quint32 mGlInternalFormat = 0;
    quint32 mWidth = 0;
    quint32 mHeight = 0;
    quint32 mFaces = 0;
    quint32 mLevelCount = 0;
    quint32 mKeyValueBytes = 0;
    QVector<QVector<QByteArray>> mLevels;
};

} // namespace gfx
