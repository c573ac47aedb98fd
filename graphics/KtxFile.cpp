#include "KtxFile.h"

#include <QtEndian>
#include <cstring>

namespace gfx {

namespace {
const unsigned char kIdentifier[12] = {0xAB, 0x4B, 0x54, 0x58, 0x20, 0x31,
                                       0x31, 0xBB, 0x0D, 0x0A, 0x1A, 0x0A};
constexpr quint32 kNativeOrder = 0x04030201;
constexpr quint32 kSwappedOrder = 0x01020304;

quint32 padded(quint32 n)
{
    return (n + 3) & ~quint32(3);
}

// Pixels of 16- or 32-bit components written in the other byte order.
void swapComponents(QByteArray& pixels, quint32 typeSize)
{
    char* p = pixels.data();
    const int n = pixels.size() - pixels.size() % int(typeSize);
    for (int i = 0; i < n; i += int(typeSize)) {
        if (typeSize == 2)
            std::swap(p[i], p[i + 1]);
        else {
            std::swap(p[i], p[i + 3]);
            std::swap(p[i + 1], p[i + 2]);
        }
    }
}
} // namespace

bool KtxFile::fail(const QString& error)
{
    mError = error;
    mLevels.clear();
    return false;
}

quint32 KtxFile::word(const char* p) const
{
    const quint32 v = qFromLittleEndian<quint32>(p);
    return mSwap ? qbswap(v) : v;
}

bool KtxFile::parseHeader(const QByteArray& header)
{
    if (header.size() < kHeaderSize)
        return fail(QStringLiteral("truncated header"));
    if (std::memcmp(header.constData(), kIdentifier, sizeof(kIdentifier)) != 0)
        return fail(QStringLiteral("not a KTX 1.1 file"));
    const char* p = header.constData() + 12;
    const quint32 order = qFromLittleEndian<quint32>(p);
    if (order != kNativeOrder && order != kSwappedOrder)
        return fail(QStringLiteral("bad endianness mark"));
    mSwap = order == kSwappedOrder;
    mGlType = word(p + 4);
    mGlTypeSize = word(p + 8);
    mGlFormat = word(p + 12);
    mGlInternalFormat = word(p + 16);
    mWidth = word(p + 24);
    mHeight = qMax<quint32>(1, word(p + 28));
    const quint32 depth = word(p + 32);
    const quint32 arrayElements = word(p + 36);
    mFaces = word(p + 40);
    mLevelCount = qMax<quint32>(1, word(p + 44));
    mKeyValueBytes = word(p + 48);
    if (depth > 1 || arrayElements > 0)
        return fail(QStringLiteral("array and 3D textures are not supported"));
    if (mFaces != 1 && mFaces != 6)
        return fail(QStringLiteral("%1 faces").arg(mFaces));
    if (mWidth == 0 || mWidth > 16384 || mHeight > 16384)
        return fail(QStringLiteral("bad size %1x%2").arg(mWidth).arg(mHeight));
    if (mLevelCount > 15)
        return fail(QStringLiteral("%1 mip levels").arg(mLevelCount));
    if ((mGlType == 0) != (mGlFormat == 0))
        return fail(QStringLiteral("inconsistent format"));
    if (mSwap && mGlTypeSize != 1 && mGlTypeSize != 2 && mGlTypeSize != 4)
        return fail(QStringLiteral("bad type size %1").arg(mGlTypeSize));
    return true;
}

int KtxFile::pixelBytes(quint32 format, quint32 type)
{
    int components = 0;
    switch (format) {
    case GL_ALPHA:
    case GL_LUMINANCE:
        components = 1;
        break;
    case GL_LUMINANCE_ALPHA:
        components = 2;
        break;
    case GL_RGB:
        components = 3;
        break;
    case GL_RGBA:
        components = 4;
        break;
    default:
        return 0;
    }
    switch (type) {
    case GL_UNSIGNED_BYTE:
        return components;
    case GL_UNSIGNED_SHORT_5_6_5:
        return format == GL_RGB ? 2 : 0;
    case GL_UNSIGNED_SHORT_4_4_4_4:
    case GL_UNSIGNED_SHORT_5_5_5_1:
        return format == GL_RGBA ? 2 : 0;
    case kHalfFloat:
        return 2 * components;
    case GL_FLOAT:
        return 4 * components;
    default:
        return 0;
    }
}

quint64 KtxFile::levelBytes(quint32 level) const
{
    const quint64 width = qMax<quint32>(1, mWidth >> level);
    const quint64 height = qMax<quint32>(1, mHeight >> level);
    return padded(quint32(width * quint64(pixelBytes(mGlFormat, mGlType)))) * height;
}

bool KtxFile::parse(const QByteArray& data)
{
    if (!parseHeader(data))
        return false;
    // The driver reads as many bytes as the size, format and type call for,
    // whatever the file claims: a short image would be read past its end.
    if (!isCompressed() && pixelBytes(mGlFormat, mGlType) == 0)
        return fail(QStringLiteral("unsupported format 0x%1 with type 0x%2")
                        .arg(mGlFormat, 0, 16)
                        .arg(mGlType, 0, 16));
    quint64 offset = quint64(kHeaderSize) + mKeyValueBytes;
    mLevels.resize(int(mLevelCount));
    for (quint32 level = 0; level < mLevelCount; ++level) {
        if (offset + 4 > quint64(data.size()))
            return fail(QStringLiteral("truncated at mip level %1").arg(level));
        const quint32 imageSize = word(data.constData() + offset);
        offset += 4;
        if (!isCompressed() && imageSize < levelBytes(level))
            return fail(QStringLiteral("mip level %1 holds %2 bytes, not %3")
                            .arg(level)
                            .arg(imageSize)
                            .arg(levelBytes(level)));
        for (quint32 face = 0; face < mFaces; ++face) {
            if (offset + imageSize > quint64(data.size()))
                return fail(QStringLiteral("truncated at mip level %1").arg(level));
            QByteArray pixels = data.mid(int(offset), int(imageSize));
            if (mSwap && mGlTypeSize > 1)
                swapComponents(pixels, mGlTypeSize);
            mLevels[int(level)].append(pixels);
            // Cube faces are padded one by one, other levels as a whole: for a
            // single face both come to the same.
            offset += padded(imageSize);
        }
    }
    return true;
}

quint64 KtxFile::totalBytes() const
{
    quint64 total = 0;
    for (const QVector<QByteArray>& faces : mLevels)
        for (const QByteArray& face : faces)
            total += quint64(face.size());
    return total;
}

} // namespace gfx
