#include <GlyphCache.h>
#include <GlyphRun.h>

#include <QFont>
#include <QMap>
#include <gtest/gtest.h>

using namespace gfx;

namespace {

const char* const kFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

class GlyphCacheTest : public ::testing::Test
{
protected:
    void TearDown() override { Singleton<GlyphCache>::reset(); }

    GlyphCache* cache = GlyphCache::instance();
};

TEST_F(GlyphCacheTest, FacesAreSharedAndUnknownFilesRefused)
{
    const int face = cache->face(QString(kFont));
    ASSERT_GE(face, 0);
    EXPECT_EQ(cache->face(QString(kFont)), face);
    EXPECT_EQ(cache->face(QFont("DejaVu Sans")), face);
    EXPECT_EQ(cache->face(QStringLiteral("/nonexistent/font.ttf")), -1);
    GlyphCache::Glyph glyph;
    EXPECT_FALSE(cache->glyph(-1, 12, 36, glyph));
    EXPECT_FALSE(cache->glyph(face, 0, 36, glyph));
}

TEST_F(GlyphCacheTest, DirectRunsKernAndSpace)
{
    QFont font("DejaVu Sans");
    font.setPixelSize(40);
    const GlyphRun plain = GlyphRun::fromText(font, "AV");
    const int face = plain.face();
    const qreal a = cache->advance(face, 40, plain.glyphs()[0]);
    // DejaVu pulls A and V together.
    EXPECT_LT(cache->kerning(face, 40, plain.glyphs()[0], plain.glyphs()[1]), -0.5);
    EXPECT_LT(plain.positions()[1].x(), a - 0.5);
    const GlyphRun spaced = GlyphRun::fromText(font, "AVA", 3);
    EXPECT_DOUBLE_EQ(spaced.positions()[1].x(), plain.positions()[1].x() + 3);
    EXPECT_EQ(spaced.glyphs()[0], spaced.glyphs()[2]);
    EXPECT_GT(spaced.advance(), spaced.positions()[2].x());
}

TEST_F(GlyphCacheTest, GlyphsArePackedApartAndBlanksTakeNoRoom)
{
    const int face = cache->face(QString(kFont));
    GlyphCache::Glyph a, b, again, space;
    ASSERT_TRUE(cache->glyph(face, 30, cache->glyphIndex(face, 'A'), a));
    ASSERT_TRUE(cache->glyph(face, 30, cache->glyphIndex(face, 'B'), b));
    ASSERT_TRUE(cache->glyph(face, 30, cache->glyphIndex(face, 'A'), again));
    ASSERT_TRUE(cache->glyph(face, 30, cache->glyphIndex(face, ' '), space));
    EXPECT_EQ(again.rect, a.rect);
    EXPECT_FALSE(a.rect.adjusted(0, 0, 1, 1).intersects(b.rect));
    EXPECT_TRUE(space.rect.isEmpty());
    // Capitals stand on the baseline: their bitmaps end there.
    EXPECT_EQ(a.offset.y() + a.rect.height(), 0);
    EXPECT_EQ(cache->pageCount(), 1);
}

TEST_F(GlyphCacheTest, FullPagesAreReusedOnlyOnceAFrameHasPassed)
{
    const int face = cache->face(QString(kFont));
    // Glyphs this tall fill the atlas after a few dozen.
    const int size = 160;
    GlyphCache::Glyph glyph;
    QVector<quint32> placed;
    quint32 index = 36;
    while (cache->glyph(face, size, index, glyph))
        placed << index++;
    ASSERT_EQ(cache->pageCount(), GlyphCache::kMaxPages);
    ASSERT_GT(placed.size(), GlyphCache::kMaxPages * 4);
    // Every page holds glyphs of this frame: nothing can be dropped.
    EXPECT_FALSE(cache->glyph(face, size, index, glyph));

    cache->nextFrame();
    // Keep the first glyph's page alive in the new frame.
    GlyphCache::Glyph first;
    ASSERT_TRUE(cache->glyph(face, size, placed.first(), first));
    ASSERT_TRUE(cache->glyph(face, size, index, glyph));
    EXPECT_NE(glyph.page, first.page);
    EXPECT_EQ(cache->pageCount(), GlyphCache::kMaxPages);
    GlyphCache::Glyph stillThere;
    ASSERT_TRUE(cache->glyph(face, size, placed.first(), stillThere));
    EXPECT_EQ(stillThere.rect, first.rect);
    EXPECT_EQ(stillThere.page, first.page);
}

TEST_F(GlyphCacheTest, ReusingAPageMovesNoOtherGlyph)
{
    const int face = cache->face(QString(kFont));
    const int size = 160;
    GlyphCache::Glyph glyph;
    // The last glyph placed on each page stands for its page, with its bitmap.
    QMap<unsigned int, quint32> onPage;
    quint32 index = 36;
    for (; cache->glyph(face, size, index, glyph); ++index) {
        if (!glyph.rect.isEmpty())
            onPage[glyph.page] = index;
    }
    ASSERT_EQ(onPage.size(), GlyphCache::kMaxPages);
    QMap<unsigned int, QImage> bitmaps;
    for (auto it = onPage.constBegin(); it != onPage.constEnd(); ++it) {
        ASSERT_TRUE(cache->glyph(face, size, it.value(), glyph));
        bitmaps[it.key()] = cache->pageImage(it.key()).copy(glyph.rect);
    }

    cache->nextFrame();
    // The first page stays in use, so the second is wiped: a page in the middle
    // of the list.
    ASSERT_TRUE(cache->glyph(face, size, onPage.first(), glyph));
    GlyphCache::Glyph fresh;
    ASSERT_TRUE(cache->glyph(face, size, index, fresh));
    const unsigned int wiped = 1;
    EXPECT_EQ(fresh.page, wiped);
    for (auto it = onPage.constBegin(); it != onPage.constEnd(); ++it) {
        if (it.key() == wiped)
            continue;
        ASSERT_TRUE(cache->glyph(face, size, it.value(), glyph)) << "page " << it.key();
        EXPECT_FALSE(glyph.page == fresh.page && glyph.rect.intersects(fresh.rect)) << "page " << it.key();
        EXPECT_TRUE(cache->pageImage(glyph.page).copy(glyph.rect) == bitmaps[it.key()])
            << "page " << it.key();
    }
}

} // namespace
