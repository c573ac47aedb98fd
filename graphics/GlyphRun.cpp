#include "GlyphRun.h"

#include "GlyphCache.h"

#include <QFont>
#include <QGlyphRun>
#include <QPaintEngine>
#include <QRawFont>
#include <QTextLayout>

namespace gfx {

GlyphRun::GlyphRun(int face, int pixelSize, const QVector<quint32>& glyphs, const QVector<QPointF>& positions)
    : mFace(face), mPixelSize(pixelSize), mGlyphs(glyphs), mPositions(positions)
{
    mPositions.resize(mGlyphs.size());
}

QVector<GlyphRun> GlyphRun::fromTextItem(const QTextItem& item, QPaintDevice* device)
{
    QTextLayout layout(item.text(), item.font(), device);
    QTextOption option;
    option.setTextDirection(item.renderFlags() & QTextItem::RightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    QVector<GlyphRun> runs;
    if (!line.isValid())
        return runs;
    const QPointF baseline(0, line.ascent());
    for (const QGlyphRun& qtRun : layout.glyphRuns()) {
        const QRawFont font = qtRun.rawFont();
        QVector<QPointF> positions = qtRun.positions();
        for (QPointF& p : positions)
            p -= baseline;
        runs << GlyphRun(GlyphCache::instance()->face(font), qRound(font.pixelSize()), qtRun.glyphIndexes(),
                         positions);
    }
    return runs;
}

GlyphRun GlyphRun::fromText(const QFont& font, const QString& text, float letterSpacing)
{
    GlyphCache* cache = GlyphCache::instance();
    const QRawFont raw = QRawFont::fromFont(font);
    const int face = cache->face(raw);
    const int pixelSize = qRound(raw.pixelSize());
    GlyphRun run;
    run.mFace = face;
    run.mPixelSize = pixelSize;
    qreal x = 0;
    for (const uint codepoint : text.toUcs4()) {
        const quint32 glyph = cache->glyphIndex(face, codepoint);
        if (!run.mGlyphs.isEmpty())
            x += cache->kerning(face, pixelSize, run.mGlyphs.last(), glyph) + letterSpacing;
        run.mGlyphs << glyph;
        run.mPositions << QPointF(x, 0);
        x += cache->advance(face, pixelSize, glyph);
    }
    run.mAdvance = x;
    return run;
}

} // namespace gfx
