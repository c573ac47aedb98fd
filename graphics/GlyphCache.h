#pragma once

#include "OrbisUIFrameworkExport.h"

#include "IGlyphPageSource.h"

#include <QHash>
#include <QImage>
#include <QRect>
#include <QString>
#include <QVector>
#include <Singleton.h>

class QRawFont;
class QFont;

namespace gfx {

// Glyph bitmaps rasterised with FreeType into alpha atlas pages, uploaded when a
// page is bound. When every page is full, the page used longest ago (and not in
// the current frame) is wiped and refilled. Installs itself as the texture cache's
// source of glyph pages. GUI thread only.
class ORBIS_UI_INTERNAL_EXPORT GlyphCache : public IGlyphPageSource
{
public:
    static constexpr int kPageSize = 512;
    static constexpr int kMaxPages = 4;

    struct Glyph
    {
        unsigned int page = 0;
        // The bitmap inside its page.
        QRect rect;
        // From the pen position on the baseline to the bitmap's top left.
        QPoint offset;
    };

    static GlyphCache* instance() { return Singleton<GlyphCache>::instance(); }
    ~GlyphCache() override;

    // A face id for a font file (and face index in a collection), or -1.
    int face(const QString& fileName, int index = 0);
    // The file that the system's font configuration gives for the font's family
    // and style, as a face id, or -1.
    int face(const QRawFont& font);
    int face(const QFont& font);

    quint32 glyphIndex(int face, uint codepoint);
    // Pen advance and kerning, in pixels at `pixelSize`.
    qreal advance(int face, int pixelSize, quint32 glyph);
    qreal kerning(int face, int pixelSize, quint32 left, quint32 right);
    // The glyph's place in the atlas, rasterised on first use; false when it
    // cannot be had (unknown face, or every page in use this frame). Empty glyphs
    // (spaces) have an empty rectangle.
    bool glyph(int face, int pixelSize, quint32 index, Glyph& out);

    void nextFrame() { ++mFrame; }
    quint64 frame() const { return mFrame; }
    int pageCount() const { return mPages.size(); }

    PageInfo page(unsigned int page) const override;
    // A page's pixels as they are uploaded (null for a page that does not exist).
    QImage pageImage(unsigned int page) const;
    GLuint activePageTexture(unsigned int page) override;
    // Forgets the pages' GL textures (the context is going away); pages are
    // uploaded again on their next bind.
    void releaseTextures();

private:
    friend class Singleton<GlyphCache>;
    GlyphCache();

    struct Page
    {
        QImage pixels;
        GLuint texture = 0;
        bool dirty = true;
        quint64 lastUsed = 0;
        int shelfY = 0;
        int shelfHeight = 0;
        int x = 0;
        QVector<quint64> glyphs;
    };

    int match(const QRawFont& font);
    bool setSize(int face, int pixelSize);
    bool place(const QSize& size, Page& page, QPoint& at) const;
    int pageFor(const QSize& size, QPoint& at);
    void wipe(int page);

    void* mLibrary = nullptr;
    QVector<void*> mFaces;
    QVector<int> mFaceSizes;
    QHash<QString, int> mFaceIds;
    QHash<QString, int> mMatchedFaces;
    QHash<quint64, Glyph> mGlyphs;
    QVector<Page> mPages;
    quint64 mFrame = 1;
};

} // namespace gfx
