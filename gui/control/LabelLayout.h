#pragma once

#include "OrbisUIFrameworkExport.h"

#include <GlyphRun.h>
#include <QColor>
#include <QFont>
#include <QPointF>
#include <QRect>
#include <QSizeF>
#include <QString>
#include <QVector>

class QPainter;

/// Text broken into lines for one width, font and set of rules, kept as glyph runs
/// that the paint engine draws without laying anything out again. Lines break at
/// word boundaries (anywhere inside a word longer than the line) and at "\n"; a
/// line that does not fit, or the last line allowed when text is left over, is
/// elided with "…".
class ORBIS_UI_EXPORT LabelLayout
{
public:
    /// Everything besides the text and the width that decides the layout; a
    /// layout is reused while its rules stay equal.
    struct Rules
    {
        QFont font;        // with its pixel size
        int maxLines = 0;  // 0: no limit
        bool wrap = false; // otherwise only "\n" breaks lines
        Qt::TextElideMode elide = Qt::ElideRight;
        qreal letterSpacing = 0;
        int lineSpacing = 0;  // extra pixels between lines
        bool fitText = false; // shrink a single line's font until it fits

        bool operator==(const Rules& o) const;
        bool operator!=(const Rules& o) const { return !(*this == o); }
    };

    /// `width` < 0: as wide as the text wants.
    void layout(const QString& text, qreal width, const Rules& rules);
    /// The size that layout() would give, without keeping any runs.
    static QSizeF measure(const QString& text, qreal width, const Rules& rules);

    void clear();
    bool isEmpty() const { return mLines.isEmpty(); }
    QSizeF size() const { return mSize; }
    int lineCount() const { return mLines.size(); }
    bool isElided() const { return mElided; }
    /// The font the lines were set in (smaller than the rules' with fitText).
    const QFont& font() const { return mFont; }
    QString lineText(int line) const;

    /// Draws the block inside `rect` by the alignment, as glyph runs through the
    /// framework's engine or as text on any other painter.
    void draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QColor& color) const;

private:
    struct Line
    {
        QString text;
        qreal width = 0;
        qreal baseline = 0; // from the block's top
        QVector<gfx::GlyphRun> runs;
    };

    /// Breaks the text; with runs, keeps them. Returns the block's size.
    static QSizeF build(const QString& text, qreal width, const Rules& rules, QVector<Line>* lines,
                        bool* elided, QFont* fitted, bool runs);
    QPointF lineOrigin(const Line& line, const QRect& rect, Qt::Alignment alignment) const;

    QVector<Line> mLines;
    QSizeF mSize{0, 0};
    QFont mFont;
    bool mElided = false;
};
