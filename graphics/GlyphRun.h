#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QPointF>
#include <QVector>

class QFont;
class QPaintDevice;
class QString;
class QTextItem;

namespace gfx {

/// Glyphs of one face at one pixel size with their pen positions on the baseline,
/// relative to the run's origin. Faces are those of the GlyphCache.
class ORBIS_UI_EXPORT GlyphRun
{
public:
    GlyphRun() = default;
    GlyphRun(int face, int pixelSize, const QVector<quint32>& glyphs, const QVector<QPointF>& positions);

    /// The glyphs and positions that Qt's text layout gives the item's text on
    /// `device`: one run per face it falls back to.
    static QVector<GlyphRun> fromTextItem(const QTextItem& item, QPaintDevice* device = nullptr);
    /// Laid out here: each glyph's advance, the face's kerning with the next, and
    /// `letterSpacing` pixels between glyphs.
    static GlyphRun fromText(const QFont& font, const QString& text, float letterSpacing = 0);

    bool isEmpty() const { return mGlyphs.isEmpty() || mFace < 0; }
    int face() const { return mFace; }
    int pixelSize() const { return mPixelSize; }
    const QVector<quint32>& glyphs() const { return mGlyphs; }
    const QVector<QPointF>& positions() const { return mPositions; }
    /// The pen position after the last glyph (runs laid out here only).
    qreal advance() const { return mAdvance; }

private:
    int mFace = -1;
    int mPixelSize = 0;
    QVector<quint32> mGlyphs;
    QVector<QPointF> mPositions;
    qreal mAdvance = 0;
};

} // namespace gfx
