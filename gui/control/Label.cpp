#include "Label.h"

#include "CssLayout.h"
#include "FontManager.h"
#include "Skin.h"

#include <DataValue.h>
#include <cmath>

namespace {
constexpr int kDefaultPixelSize = 24;
constexpr int kSingleLineFlag = 256;
constexpr int kWordWrapFlag = 4096;
constexpr Qt::Alignment kHorizontal = Qt::AlignLeft | Qt::AlignRight | Qt::AlignHCenter;
constexpr Qt::Alignment kVertical = Qt::AlignTop | Qt::AlignBottom | Qt::AlignVCenter;

QFont defaultFont()
{
    QFont font;
    FontManager::instance()->findFont(QStringLiteral("normal"), font);
    font.setPixelSize(kDefaultPixelSize);
    return font;
}
} // namespace

Label::Label(DisplayView* parent, const char* name) : DisplayView(parent, name)
{
    // Text is not for touching: a touch goes to the view under the label.
    setTouchBehavior(IgnoreTouches, true);
    mRules.font = defaultFont();
    mColor = Skin::parseColor(QStringLiteral("foregroundColor"));
    // A flex parent gave the view its binding before the label existed.
    layoutImplChanged();
}

Label::Label(DisplayView* parent, const char* name, const QString& text, const QString& styleText)
    : Label(parent, name)
{
    if (!styleText.isEmpty())
        setStyle(Style(styleText));
    setText(text);
}

void Label::setText(const QString& text)
{
    if (text == mText)
        return;
    mText = text;
    textChanged();
}

void Label::setStyle(const Style& style)
{
    DisplayView::setStyle(style);
    applyTextStyle(style);
}

void Label::applyTextStyle(const Style& style)
{
    if (style.isNull())
        return;
    LabelLayout::Rules rules = mRules;
    if (style.isDefined(Style::Font)) {
        const int size = rules.font.pixelSize();
        rules.font = style.font();
        rules.font.setPixelSize(size);
    } else {
        bool flag = false;
        if (style.boolValue(Style::Bold, flag))
            rules.font.setBold(flag);
        if (style.boolValue(Style::Italic, flag))
            rules.font.setItalic(flag);
    }
    if (const int size = style.fontSize(); size > 0)
        rules.font.setPixelSize(size);

    int flags = 0;
    const bool textFlags = style.enumValue(Style::TextFlags, flags);
    const bool labelFlags = !textFlags && style.enumValue(Style::LabelFlags, flags);
    if (textFlags || labelFlags) {
        rules.wrap = (flags & kWordWrapFlag) && !(flags & kSingleLineFlag);
        if (flags & kSingleLineFlag)
            rules.maxLines = 1;
    }
    style.intValue(Style::NumberOfLines, rules.maxLines);
    if (style.isDefined(Style::ElideMode))
        rules.elide = style.elide();
    style.doubleValue(Style::LetterSpacing, rules.letterSpacing);
    style.intValue(Style::LineSpacing, rules.lineSpacing);
    style.boolValue(Style::FitText, rules.fitText);
    if (rules != mRules) {
        mRules = rules;
        textChanged();
    }

    Qt::Alignment alignment = mAlignment;
    if (style.isDefined(Style::Alignment))
        alignment = style.alignment();
    else if (labelFlags && (Qt::Alignment(flags) & (kHorizontal | kVertical)))
        alignment = Qt::Alignment(flags) & (kHorizontal | kVertical);
    if (style.isDefined(Style::HorizontalAlignment))
        alignment = (alignment & ~kHorizontal) | (style.alignment(Style::HorizontalAlignment) & kHorizontal);
    if (style.isDefined(Style::VerticalAlignment))
        alignment = (alignment & ~kVertical) | (style.alignment(Style::VerticalAlignment) & kVertical);
    setAlignment(alignment);

    QString text;
    if (style.stringValue(Style::Color, text))
        setColor(Skin::parseColor(text));
    if (style.isDefined(Style::LabelPadding))
        setLabelPadding(style.padding(Style::LabelPadding));
    bool shadow = false;
    if (style.boolValue(Style::Shadow, shadow)) {
        const SkinColor color =
            shadow && style.stringValue(Style::ShadowColor, text) ? Skin::parseColor(text) : SkinColor();
        setTextShadow(color, style.pointValue(Style::ShadowOffset));
    }
    if (style.stringValue(Style::Label, text))
        setText(text);
    if (style.stringValue(Style::InvalidText, text))
        setInvalidText(text);
    double precision = 0;
    if (style.doubleValue(Style::Precision, precision))
        setPrecision(int(precision));
}

void Label::setValueFormat(const QString& format)
{
    if (format == mValueFormat)
        return;
    mValueFormat = format;
    refreshValue();
}

void Label::setPrecision(int decimals)
{
    decimals = qBound(0, decimals, 9);
    if (decimals == mPrecision)
        return;
    mPrecision = decimals;
    refreshValue();
}

void Label::setInvalidText(const QString& text)
{
    if (text == mInvalidText)
        return;
    mInvalidText = text;
    refreshValue();
}

void Label::refreshValue()
{
    if (DataValue* source = valueSource()) {
        QVariant value;
        {
            DataValue::ConditionalLocker lock(source);
            value = source->value();
        }
        if (value.type() == QVariant::String)
            valueChanged(false, value.toString());
        else
            valueChanged(false, value.toDouble());
    }
}

void Label::valueChanged(bool, double value)
{
    bool valid = true;
    if (DataValue* source = valueSource()) {
        DataValue::ConditionalLocker lock(source);
        valid = source->value().isValid();
    }
    if (!valid || !std::isfinite(value)) {
        setText(mInvalidText);
        return;
    }
    // "-0" is no temperature anyone wants to read: what rounds to zero shows as zero.
    const double half = 0.5 * std::pow(10.0, -mPrecision);
    showValue(QString::number(std::abs(value) < half ? 0.0 : value, 'f', mPrecision));
}

void Label::valueChanged(bool, QString value)
{
    if (value.isNull()) {
        setText(mInvalidText);
        return;
    }
    showValue(value);
}

void Label::showValue(const QString& value)
{
    setText(mValueFormat.contains(QLatin1String("%1")) ? mValueFormat.arg(value) : value);
}

void Label::setFont(const QFont& font)
{
    if (font == mRules.font)
        return;
    mRules.font = font;
    textChanged();
}

void Label::setColor(const SkinColor& color)
{
    if (color == mColor)
        return;
    mColor = color;
    update();
}

void Label::setAlignment(Qt::Alignment alignment)
{
    if (alignment == mAlignment)
        return;
    mAlignment = alignment;
    update();
}

void Label::setLabelPadding(const Padding& padding)
{
    if (padding == mPadding)
        return;
    mPadding = padding;
    textChanged();
}

void Label::setNumberOfLines(int lines)
{
    if (lines == mRules.maxLines)
        return;
    mRules.maxLines = qMax(0, lines);
    textChanged();
}

void Label::setWordWrap(bool wrap)
{
    if (wrap == mRules.wrap)
        return;
    mRules.wrap = wrap;
    textChanged();
}

void Label::setElideMode(Qt::TextElideMode mode)
{
    if (mode == mRules.elide)
        return;
    mRules.elide = mode;
    textChanged();
}

void Label::setLetterSpacing(qreal pixels)
{
    if (pixels == mRules.letterSpacing)
        return;
    mRules.letterSpacing = pixels;
    textChanged();
}

void Label::setLineSpacing(int pixels)
{
    if (pixels == mRules.lineSpacing)
        return;
    mRules.lineSpacing = pixels;
    textChanged();
}

void Label::setFitText(bool fit)
{
    if (fit == mRules.fitText)
        return;
    mRules.fitText = fit;
    textChanged();
}

void Label::setTextShadow(const SkinColor& color, const QPoint& offset)
{
    if (color == mShadowColor && offset == mShadowOffset)
        return;
    mShadowColor = color;
    mShadowOffset = offset;
    update();
}

QRect Label::contentRect() const
{
    return QRect(mPadding.left, mPadding.top, width() - mPadding.left - mPadding.right,
                 height() - mPadding.top - mPadding.bottom);
}

void Label::textChanged()
{
    mTextDirty = true;
    mMeasuredWidth = -2;
    update();
    layoutPropertyChanged(SizeProperty);
}

void Label::ensureLaidOut()
{
    const int width = qMax(0, contentRect().width());
    if (!mTextDirty && width == mLaidOutWidth)
        return;
    mLayout.layout(mText, width, mRules);
    mTextDirty = false;
    mLaidOutWidth = width;
    ++mLayoutCount;
}

int Label::lineCount()
{
    ensureLaidOut();
    return mLayout.lineCount();
}

bool Label::isElided()
{
    ensureLaidOut();
    return mLayout.isElided();
}

QString Label::lineText(int line)
{
    ensureLaidOut();
    return mLayout.lineText(line);
}

void Label::layoutImplChanged()
{
    DisplayView::layoutImplChanged();
    if (CssLayout* css = cssLayout())
        css->setOption(CssLayout::Measure, true);
}

QSizeF Label::naturalSize(double width)
{
    const double inner = width < 0 ? -1.0 : qMax(0.0, width - mPadding.left - mPadding.right);
    if (inner != mMeasuredWidth) {
        mMeasured = LabelLayout::measure(mText, inner, mRules);
        mMeasuredWidth = inner;
    }
    return mMeasured + QSizeF(mPadding.left + mPadding.right, mPadding.top + mPadding.bottom);
}

void Label::draw(QPainter& painter)
{
    DisplayView::draw(painter);
    if (mText.isEmpty())
        return;
    ensureLaidOut();
    const QRect content = contentRect();
    if (mShadowColor.isValid())
        mLayout.draw(painter, content.translated(mShadowOffset), mAlignment, mShadowColor.color());
    mLayout.draw(painter, content, mAlignment, mColor.color());
}

void Label::resized()
{
    DisplayView::resized();
    // The lines follow the width; they are laid out again when next needed.
    update();
}

QVariantMap Label::toVariantMap()
{
    QVariantMap map = DisplayView::toVariantMap();
    map.insert(QStringLiteral("text"), mText);
    map.insert(QStringLiteral("lines"), lineCount());
    return map;
}
