#include "LabelLayout.h"

#include <GlyphCache.h>
#include <GraphicsPaintEngine.h>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>
#include <cmath>

namespace {
// Wide enough for any line, small enough for the layout's fixed-point numbers.
constexpr qreal kUnbounded = 1e6;
const QChar kEllipsis(0x2026);

// One pixel at a time, not below half the size nor below 8 pixels.
QFont fittedFont(const QString& text, qreal width, QFont font)
{
    const int floor = qMax(8, font.pixelSize() / 2);
    while (font.pixelSize() > floor && QFontMetricsF(font).horizontalAdvance(text) > width)
        font.setPixelSize(font.pixelSize() - 1);
    return font;
}

QTextOption lineOption(bool wrap)
{
    // Absolute: right-to-left text starts at the line's left too, as alignment
    // is applied when drawing.
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(wrap ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    return option;
}

// The line's glyphs with positions from the start of its text on the baseline.
QVector<gfx::GlyphRun> runsOf(const QTextLine& line, int from, int length)
{
    const QPointF origin(line.naturalTextRect().left(), line.y() + line.ascent());
    QVector<gfx::GlyphRun> runs;
    for (const QGlyphRun& glyphs : line.glyphRuns(from, length)) {
        const QRawFont raw = glyphs.rawFont();
        QVector<QPointF> positions = glyphs.positions();
        for (QPointF& p : positions)
            p -= origin;
        runs << gfx::GlyphRun(gfx::GlyphCache::instance()->face(raw), qRound(raw.pixelSize()),
                              glyphs.glyphIndexes(), positions);
    }
    return runs;
}
} // namespace

bool LabelLayout::Rules::operator==(const Rules& o) const
{
    return font == o.font && maxLines == o.maxLines && wrap == o.wrap && elide == o.elide &&
           letterSpacing == o.letterSpacing && lineSpacing == o.lineSpacing && fitText == o.fitText;
}

void LabelLayout::layout(const QString& text, qreal width, const Rules& rules)
{
    mLines.clear();
    mElided = false;
    mSize = build(text, width, rules, &mLines, &mElided, &mFont, true);
}

QSizeF LabelLayout::measure(const QString& text, qreal width, const Rules& rules)
{
    bool elided = false;
    QFont font;
    return build(text, width, rules, nullptr, &elided, &font, false);
}

void LabelLayout::clear()
{
    mLines.clear();
    mSize = QSizeF(0, 0);
    mElided = false;
}

QString LabelLayout::lineText(int line) const
{
    return line >= 0 && line < mLines.size() ? mLines[line].text : QString();
}

QSizeF LabelLayout::build(const QString& text, qreal width, const Rules& rules, QVector<Line>* lines,
                          bool* elided, QFont* fitted, bool runs)
{
    QFont font = rules.font;
    // Whole-pixel advances: the engine places each glyph on a whole pixel, and text
    // stays as crisp as its hinted glyphs.
    font.setStyleStrategy(QFont::StyleStrategy(font.styleStrategy() | QFont::ForceIntegerMetrics));
    if (rules.letterSpacing != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, rules.letterSpacing);
    const bool constrained = width >= 0;
    if (rules.fitText && constrained && !rules.wrap && !text.contains(QLatin1Char('\n')))
        font = fittedFont(text, width, font);
    *fitted = font;
    if (text.isEmpty())
        return QSizeF(0, 0);

    QString flat = text;
    flat.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextLayout layout(flat, font);
    layout.setTextOption(lineOption(rules.wrap && constrained));
    layout.beginLayout();
    QVector<QTextLine> made;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(constrained ? width : kUnbounded);
        made << line;
        // One line more than allowed tells that text is left over.
        if (rules.maxLines > 0 && made.size() > rules.maxLines)
            break;
    }
    layout.endLayout();

    const QFontMetricsF metrics(font);
    const qreal lineHeight = metrics.ascent() + metrics.descent();
    const bool cut = rules.maxLines > 0 && made.size() > rules.maxLines;
    const int count = cut ? rules.maxLines : made.size();
    qreal blockWidth = 0;
    for (int i = 0; i < count; ++i) {
        const QTextLine& line = made[i];
        Line out;
        out.text = flat.mid(line.textStart(), line.textLength());
        while (out.text.endsWith(QChar::LineSeparator))
            out.text.chop(1);
        out.width = line.naturalTextWidth();
        out.baseline = i * (lineHeight + rules.lineSpacing) + metrics.ascent();
        const bool leftOver = cut && i == count - 1;
        const bool overflow = constrained && out.width > width + 0.5;
        if (rules.elide != Qt::ElideNone && (leftOver || overflow)) {
            QString rest = leftOver ? flat.mid(line.textStart()) : out.text;
            rest.replace(QChar::LineSeparator, QLatin1Char(' '));
            QString shown = metrics.elidedText(rest, rules.elide, constrained ? width : kUnbounded);
            // Text was left over: the line says so even when the rest would fit.
            if (shown == rest)
                shown = out.text.trimmed() + kEllipsis;
            *elided = true;
            QTextLayout single(shown, font);
            single.setTextOption(lineOption(false));
            single.beginLayout();
            QTextLine only = single.createLine();
            only.setLineWidth(kUnbounded);
            single.endLayout();
            out.text = shown;
            out.width = only.naturalTextWidth();
            if (runs)
                out.runs = runsOf(only, -1, -1);
        } else if (runs) {
            out.runs = runsOf(line, line.textStart(), line.textLength());
        }
        if (constrained)
            out.width = qMin(out.width, width);
        blockWidth = qMax(blockWidth, out.width);
        if (lines)
            lines->append(out);
    }
    const qreal height = count * lineHeight + qMax(0, count - 1) * rules.lineSpacing;
    return QSizeF(std::ceil(blockWidth), std::ceil(height));
}

QPointF LabelLayout::lineOrigin(const Line& line, const QRect& rect, Qt::Alignment alignment) const
{
    qreal x = rect.left();
    if (alignment & Qt::AlignRight)
        x = rect.left() + rect.width() - line.width;
    else if (alignment & Qt::AlignHCenter)
        x = rect.left() + (rect.width() - line.width) / 2;
    qreal top = rect.top();
    if (alignment & Qt::AlignBottom)
        top = rect.top() + rect.height() - mSize.height();
    else if (alignment & Qt::AlignVCenter)
        top = rect.top() + (rect.height() - mSize.height()) / 2;
    // Whole pixels keep the glyphs as sharp as they were rasterised.
    return QPointF(std::round(x), std::round(top + line.baseline));
}

void LabelLayout::draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment,
                       const QColor& color) const
{
    if (mLines.isEmpty() || !color.isValid() || color.alpha() == 0)
        return;
    if (gfx::GraphicsPaintEngine* engine = gfx::GraphicsPaintEngine::of(painter)) {
        for (const Line& line : mLines) {
            const QPointF origin = lineOrigin(line, rect, alignment);
            for (const gfx::GlyphRun& run : line.runs)
                engine->drawGlyphRun(origin, run, color);
        }
        return;
    }
    painter.save();
    painter.setFont(mFont);
    painter.setPen(color);
    for (const Line& line : mLines)
        painter.drawText(lineOrigin(line, rect, alignment), line.text);
    painter.restore();
}
