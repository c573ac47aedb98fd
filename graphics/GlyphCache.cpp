#include "GlyphCache.h"

#include "GLFunctions.h"
#include "GLStateManager.h"
#include "TextureCache.h"

#include <Logger.h>
#include <QFile>
#include <QFont>
#include <QRawFont>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

static const char* const kLogSource = "graphics/GlyphCache";

namespace gfx {

namespace {
// Between glyphs, so that linear sampling never picks up a neighbour.
constexpr int kPadding = 1;

FT_Face toFace(void* face)
{
    return static_cast<FT_Face>(face);
}

quint64 glyphKey(int face, int pixelSize, quint32 index)
{
    return (quint64(face) << 48) | (quint64(pixelSize & 0xffff) << 32) | index;
}

qreal fromFixed(FT_Pos value)
{
    return value / 64.0;
}
} // namespace

GlyphCache::GlyphCache()
{
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) == 0)
        mLibrary = library;
    else
        ORBIS_ERROR(QStringLiteral("FreeType cannot be initialised"));
    TextureCache::instance()->setGlyphPageSource(this);
}

GlyphCache::~GlyphCache()
{
    if (Singleton<TextureCache>::exists())
        TextureCache::instance()->setGlyphPageSource(nullptr);
    for (void* face : qAsConst(mFaces))
        FT_Done_Face(toFace(face));
    if (mLibrary)
        FT_Done_FreeType(static_cast<FT_Library>(mLibrary));
}

int GlyphCache::face(const QString& fileName, int index)
{
    const QString id = fileName + QLatin1Char('#') + QString::number(index);
    auto it = mFaceIds.constFind(id);
    if (it != mFaceIds.constEnd())
        return *it;
    FT_Face face = nullptr;
    if (!mLibrary || FT_New_Face(static_cast<FT_Library>(mLibrary), QFile::encodeName(fileName).constData(),
                                 index, &face) != 0) {
        ORBIS_WARN(QStringLiteral("Cannot load font %1").arg(fileName));
        mFaceIds.insert(id, -1);
        return -1;
    }
    mFaces << face;
    mFaceSizes << 0;
    mFaceIds.insert(id, mFaces.size() - 1);
    return mFaces.size() - 1;
}

int GlyphCache::face(const QRawFont& font)
{
    // Matching asks the font configuration every time: remember its answers.
    const QString name = font.familyName() + QLatin1Char('|') + font.styleName();
    auto known = mMatchedFaces.constFind(name);
    if (known != mMatchedFaces.constEnd())
        return *known;
    const int id = match(font);
    mMatchedFaces.insert(name, id);
    return id;
}

int GlyphCache::match(const QRawFont& font)
{
    FcPattern* pattern = FcPatternCreate();
    const QByteArray family = font.familyName().toUtf8();
    const QByteArray style = font.styleName().toUtf8();
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.constData()));
    if (!style.isEmpty())
        FcPatternAddString(pattern, FC_STYLE, reinterpret_cast<const FcChar8*>(style.constData()));
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, pattern, &result);
    FcPatternDestroy(pattern);
    if (!match)
        return -1;
    FcChar8* file = nullptr;
    int index = 0;
    int id = -1;
    if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch) {
        FcPatternGetInteger(match, FC_INDEX, 0, &index);
        id = face(QFile::decodeName(reinterpret_cast<const char*>(file)), index);
    }
    FcPatternDestroy(match);
    return id;
}

int GlyphCache::face(const QFont& font)
{
    return face(QRawFont::fromFont(font));
}

bool GlyphCache::setSize(int face, int pixelSize)
{
    if (face < 0 || face >= mFaces.size() || pixelSize <= 0)
        return false;
    if (mFaceSizes[face] != pixelSize) {
        if (FT_Set_Pixel_Sizes(toFace(mFaces[face]), 0, FT_UInt(pixelSize)) != 0)
            return false;
        mFaceSizes[face] = pixelSize;
    }
    return true;
}

quint32 GlyphCache::glyphIndex(int face, uint codepoint)
{
    if (face < 0 || face >= mFaces.size())
        return 0;
    return FT_Get_Char_Index(toFace(mFaces[face]), codepoint);
}

qreal GlyphCache::advance(int face, int pixelSize, quint32 glyph)
{
    if (!setSize(face, pixelSize) || FT_Load_Glyph(toFace(mFaces[face]), glyph, FT_LOAD_TARGET_LIGHT) != 0)
        return 0;
    // Unhinted, as Qt's layout advances: hinting rounds each one and the error adds up.
    return toFace(mFaces[face])->glyph->linearHoriAdvance / 65536.0;
}

qreal GlyphCache::kerning(int face, int pixelSize, quint32 left, quint32 right)
{
    if (!setSize(face, pixelSize) || !FT_HAS_KERNING(toFace(mFaces[face])))
        return 0;
    FT_Vector delta{0, 0};
    if (FT_Get_Kerning(toFace(mFaces[face]), left, right, FT_KERNING_UNFITTED, &delta) != 0)
        return 0;
    return fromFixed(delta.x);
}

bool GlyphCache::place(const QSize& size, Page& page, QPoint& at) const
{
    // Each slot starts with the padding before its glyph; the next slot's (or the
    // page margin's) padding follows it. Turned glyphs sample half a texel
    // outside their bitmap on every side.
    const int w = size.width() + kPadding;
    const int h = size.height() + kPadding;
    if (page.x + w + kPadding > kPageSize) {
        page.shelfY += page.shelfHeight;
        page.shelfHeight = 0;
        page.x = 0;
    }
    if (w + kPadding > kPageSize || page.shelfY + h + kPadding > kPageSize)
        return false;
    at = QPoint(page.x + kPadding, page.shelfY + kPadding);
    page.x += w;
    page.shelfHeight = qMax(page.shelfHeight, h);
    return true;
}

int GlyphCache::pageFor(const QSize& size, QPoint& at)
{
    for (int i = 0; i < mPages.size(); ++i) {
        // Trying a page may close its shelf: only try where the glyph can fit.
        Page probe = mPages[i];
        if (place(size, probe, at)) {
            mPages[i] = probe;
            return i;
        }
    }
    int chosen = mPages.size();
    if (chosen < kMaxPages) {
        Page page;
        page.pixels = QImage(kPageSize, kPageSize, QImage::Format_Alpha8);
        page.pixels.fill(0);
        mPages << page;
    } else {
        chosen = -1;
        for (int i = 0; i < mPages.size(); ++i)
            if (mPages[i].lastUsed < mFrame && (chosen < 0 || mPages[i].lastUsed < mPages[chosen].lastUsed))
                chosen = i;
        if (chosen < 0)
            return -1;
        // Refilled where it is: every other page keeps its number, and with it the
        // glyphs that display lists have recorded on it.
        wipe(chosen);
    }
    return place(size, mPages[chosen], at) ? chosen : -1;
}

void GlyphCache::wipe(int index)
{
    Page& page = mPages[index];
    for (quint64 key : qAsConst(page.glyphs))
        mGlyphs.remove(key);
    page.glyphs.clear();
    page.pixels.fill(0);
    page.dirty = true;
    page.shelfY = page.shelfHeight = page.x = 0;
}

bool GlyphCache::glyph(int face, int pixelSize, quint32 index, Glyph& out)
{
    const quint64 key = glyphKey(face, pixelSize, index);
    auto it = mGlyphs.find(key);
    if (it != mGlyphs.end()) {
        if (!it->rect.isEmpty())
            mPages[int(it->page)].lastUsed = mFrame;
        out = *it;
        return true;
    }
    if (!setSize(face, pixelSize))
        return false;
    FT_Face ft = toFace(mFaces[face]);
    if (FT_Load_Glyph(ft, index, FT_LOAD_TARGET_LIGHT) != 0 ||
        FT_Render_Glyph(ft->glyph, FT_RENDER_MODE_NORMAL) != 0)
        return false;
    const FT_Bitmap& bitmap = ft->glyph->bitmap;
    Glyph glyph;
    glyph.offset = QPoint(ft->glyph->bitmap_left, -ft->glyph->bitmap_top);
    const QSize size(int(bitmap.width), int(bitmap.rows));
    if (!size.isEmpty()) {
        QPoint at;
        const int pageIndex = pageFor(size, at);
        if (pageIndex < 0)
            return false;
        Page& page = mPages[pageIndex];
        for (int row = 0; row < size.height(); ++row)
            memcpy(page.pixels.scanLine(at.y() + row) + at.x(), bitmap.buffer + row * bitmap.pitch,
                   size_t(size.width()));
        page.dirty = true;
        page.lastUsed = mFrame;
        page.glyphs << key;
        glyph.page = unsigned(pageIndex);
        glyph.rect = QRect(at, size);
    }
    mGlyphs.insert(key, glyph);
    out = glyph;
    return true;
}

IGlyphPageSource::PageInfo GlyphCache::page(unsigned int) const
{
    return {QSize(kPageSize, kPageSize), 1};
}

QImage GlyphCache::pageImage(unsigned int index) const
{
    return int(index) < mPages.size() ? mPages[int(index)].pixels : QImage();
}

GLuint GlyphCache::activePageTexture(unsigned int index)
{
    if (int(index) >= mPages.size())
        return 0;
    Page& page = mPages[int(index)];
    GLFunctions* f = GLFunctions::current();
    GLStateManager* state = GLStateManager::instance();
    if (!page.texture) {
        f->glGenTextures(1, &page.texture);
        state->glBindTexture2D(page.texture);
        f->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        f->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        f->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        f->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        page.dirty = true;
    }
    if (page.dirty) {
        state->glBindTexture2D(page.texture);
        f->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        f->glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, kPageSize, kPageSize, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                        page.pixels.constBits());
        page.dirty = false;
    }
    return page.texture;
}

void GlyphCache::releaseTextures()
{
    for (Page& page : mPages) {
        if (page.texture)
            GLFunctions::current()->glDeleteTextures(1, &page.texture);
        page.texture = 0;
        page.dirty = true;
    }
}

} // namespace gfx
