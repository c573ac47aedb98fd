#pragma once

#include "DisplayView.h"
#include "LabelLayout.h"
#include "OrbisUIFrameworkExport.h"
#include "SkinColor.h"

/// Text in a view: one or more lines, aligned inside the view less its label
/// padding, elided with "…" where it does not fit. Its look comes from the style:
/// Font, FontSize (by language), Color, Alignment (or HorizontalAlignment and
/// VerticalAlignment), LabelPadding, NumberOfLines, TextFlags or LabelFlags
/// ("wordwrap", "single"), ElideMode, LetterSpacing, LineSpacing, FitText, Shadow
/// with ShadowColor and ShadowOffset, and the text itself from Label.
///
/// Labels let touches through to the view under them (TouchEnabled:1 takes them).
/// The text is laid out when the text, the width or the font (or another rule)
/// changes, never while drawing: frames draw the kept glyph runs.
class ORBIS_UI_EXPORT Label : public DisplayView
{
    Q_OBJECT

public:
    explicit Label(DisplayView* parent, const char* name = nullptr);
    Label(DisplayView* parent, const char* name, const QString& text, const QString& styleText = QString());

    void setText(const QString& text);
    const QString& text() const { return mText; }

    /// A bound data value shows as text: numbers with the style's Precision (decimals,
    /// 0 by default), strings as they are, an invalid value as the style's
    /// InvalidText. The format puts the value in place of "%1" ("%1 km").
    void setValueFormat(const QString& format);
    const QString& valueFormat() const { return mValueFormat; }
    void setPrecision(int decimals);
    void setInvalidText(const QString& text);
    /// Binding delivers changes only: this shows the bound value as it is now.
    void refreshValue();
    void valueChanged(bool animated, double value) override;
    void valueChanged(bool animated, QString value) override;

    void setStyle(const Style& style) override;
    /// Only the text attributes of the style, not the view's geometry or background:
    /// for a label inside a control that shares the control's style.
    void applyTextStyle(const Style& style);
    /// The font with its pixel size.
    void setFont(const QFont& font);
    const QFont& font() const { return mRules.font; }
    void setColor(const SkinColor& color);
    const SkinColor& color() const { return mColor; }
    void setAlignment(Qt::Alignment alignment);
    Qt::Alignment alignment() const { return mAlignment; }
    void setLabelPadding(const Padding& padding);
    const Padding& labelPadding() const { return mPadding; }
    /// 0: as many lines as the text needs.
    void setNumberOfLines(int lines);
    int numberOfLines() const { return mRules.maxLines; }
    void setWordWrap(bool wrap);
    bool wordWrap() const { return mRules.wrap; }
    void setElideMode(Qt::TextElideMode mode);
    void setLetterSpacing(qreal pixels);
    void setLineSpacing(int pixels);
    void setFitText(bool fit);
    /// A second copy of the text under it, moved by `offset`; an invalid colour removes it.
    void setTextShadow(const SkinColor& color, const QPoint& offset);

    /// The laid-out text (laid out now if it is not current).
    int lineCount();
    bool isElided();
    QString lineText(int line);
    /// How often the text has been laid out, for diagnostics.
    int layoutCount() const { return mLayoutCount; }

    /// The text's size plus the label padding; `width` < 0 for one unconstrained
    /// line per paragraph.
    QSizeF naturalSize(double width) override;
    /// In a flex layout a label is measured: it takes the size of its text.
    void layoutImplChanged() override;
    void draw(QPainter& painter) override;
    void resized() override;
    QVariantMap toVariantMap() override;

private:
    QRect contentRect() const;
    void ensureLaidOut();
    /// Something the lines depend on changed: lay out again before the next draw,
    /// and let a flex layout measure again.
    void textChanged();
    void showValue(const QString& value);

    QString mText;
    QString mValueFormat = QStringLiteral("%1");
    QString mInvalidText;
    int mPrecision = 0;
    LabelLayout::Rules mRules;
    LabelLayout mLayout;
    SkinColor mColor;
    SkinColor mShadowColor;
    QPoint mShadowOffset;
    Padding mPadding;
    Qt::Alignment mAlignment = Qt::AlignLeft | Qt::AlignVCenter;
    bool mTextDirty = true;
    int mLaidOutWidth = -1;
    int mLayoutCount = 0;
    /// The last measurement, since a flex pass asks for the same width repeatedly.
    double mMeasuredWidth = -2;
    QSizeF mMeasured;
};
