#pragma once

#include "OrbisUIFrameworkExport.h"
#include "Padding.h"
#include "TExplicitlySharedDataPointer.h"

#include <QFont>
#include <QHash>
#include <QList>
#include <QMetaType>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QVariant>

class QObject;

/// The look of a view, built from a style string of "Key:Value" parts and
/// named-style names separated by ";". A Style is a cheap value handle: every
/// distinct normalized style string has one shared StyleData, owned by the
/// StyleManager, so equal style strings share their parsed attributes.
class ORBIS_UI_EXPORT Style
{
public:
    /// The number is the identity of an attribute (style files and consumers rely
    /// on it); never renumber, only append.
    enum StyleAttribute
    {
        Width = 0,
        Height = 1,
        Widths = 2,
        X = 3,
        Y = 4,
        Bottom = 5,
        Right = 6,
        InnerSpacing = 7,
        InnerPadding = 8,
        Alpha = 9,
        Color = 10,
        ShadowColor = 11,
        HighlightColor = 12,
        HighlightShadowColor = 13,
        Shadow = 14,
        ShadowOffset = 15,
        StrokeColor = 16,
        StrokeWidth = 17,
        Font = 18,
        ValueFont = 19,
        ApplyToChildren = 20,
        FontSize = 21,
        FontSizeChinese = 22,
        FontSizeJapanese = 23,
        FontSizeKorean = 24,
        FontSizeGerman = 25,
        FontSizeItalian = 26,
        FontSizeDutch = 27,
        FontSizeFrench = 28,
        FontSizeSpanish = 29,
        FontSizeSwedish = 30,
        LetterSpacing = 31,
        Label = 32,
        Alignment = 33,
        Alignments = 34,
        HorizontalAlignment = 35,
        VerticalAlignment = 36,
        ButtonType = 37,
        ButtonColor = 38,
        Toggle = 39,
        TouchWhenHighlight = 40,
        TapAnimationDelay = 41,
        Bold = 42,
        Italic = 43,
        FitText = 44,
        FixedHeight = 45,
        FixedWidth = 46,
        ElideMode = 47,
        LabelFlags = 48,
        TextFlags = 49,
        ContentPadding = 50,
        ImagePadding = 51,
        LabelPadding = 52,
        ShadowPadding = 53,
        TouchPadding = 54,
        LayoutMargin = 55,
        InvalidText = 56,
        Precision = 57,
        HorizontalPadding = 58,
        HorizontalOffset = 59,
        TouchEnabled = 60,
        SwitchType = 61,
        FlipValue = 62,
        SegmentWidth = 63,
        FlowWidth = 64,
        Continuous = 65,
        Border = 66,
        Cuts = 67,
        ImageCount = 68,
        ScaleImage = 69,
        TileImage = 70,
        VerticalSprite = 71,
        Scale = 72,
        Prescale = 73,
        BackgroundColor = 74,
        BackgroundImage = 75,
        CornerRadius = 76,
        OverlayFrameImage = 77,
        NumberOfLines = 78,
        LineSpacing = 79,
        /// Flex-layout properties, handed to the layout engine unchanged.
        Direction = 80,
        FlexDirection = 81,
        JustifyContent = 82,
        AlignContent = 83,
        AlignItems = 84,
        AlignSelf = 85,
        FlexWrap = 86,
        PositionType = 87,
        Flex = 88,
        Margin = 89,
        Padding = 90,
        MinWidth = 91,
        MinHeight = 92,
        MaxWidth = 93,
        MaxHeight = 94,
        FitToImage = 95,
        ButtonImage = 96,
        ButtonHighlightedImage = 97,
        ButtonSelectedImage = 98,
        SpinnerImage = 99,
        VerticalDivider = 100,
        DividerColor1 = 101,
        DividerColor2 = 102,
        ImageResizeBehavior = 103,
        Image = 104,
        SpinnerType = 105,
        ThumbVisible = 106,
    };
    static constexpr int kAttributeCount = 107;

    /// How the value text of an attribute is converted.
    enum StyleAttributeType
    {
        BoolType = 0,
        IntType = 1,
        IntListType = 2,
        RealType = 3,
        RealListType = 4,
        PaddingType = 5,
        PointType = 6,
        StringType = 7,
        FontType = 8,
        /// Older style files used several enum codes; all of them parse like EnumType.
        EnumType9 = 9,
        EnumType = 10,
        EnumType11 = 11,
        EnumType12 = 12,
        AlignmentListType = 13,
    };

    class StyleData;

    /// The null style: every attribute reads as undefined.
    Style();
    explicit Style(const QString& styleText);
    explicit Style(StyleData* data);
    Style(const Style& other);
    Style& operator=(const Style& other);
    ~Style();

    bool isNull() const { return !mData; }
    StyleData* data() const { return mData.data(); }
    QString styleText() const;
    QString name() const;
    bool operator==(const Style& other) const { return mData == other.mData; }
    bool operator!=(const Style& other) const { return mData != other.mData; }

    /// Splits at ";", drops empty parts, trims each part and joins them with ";".
    static QString normalizedSpec(const QString& styleText);

    bool isDefined(StyleAttribute attr) const;

    /// Typed readers: the kind's neutral value when the attribute is undefined.
    int intValue(StyleAttribute attr) const;
    double doubleValue(StyleAttribute attr) const;
    bool boolValue(StyleAttribute attr) const;
    QString stringValue(StyleAttribute attr) const;
    int enumValue(StyleAttribute attr) const;
    QPoint pointValue(StyleAttribute attr) const;
    ::Padding padding(StyleAttribute attr) const;
    /// The font with the style's Bold and Italic switches applied when they are set.
    QFont font(StyleAttribute attr = Font) const;
    Qt::Alignment alignment(StyleAttribute attr = Alignment) const;
    QList<Qt::Alignment> alignments(StyleAttribute attr = Alignments) const;
    int textFlag(StyleAttribute attr = TextFlags) const;
    /// Qt::ElideNone when undefined: not eliding is the neutral mode.
    Qt::TextElideMode elide(StyleAttribute attr = ElideMode) const;
    QList<int> intListValue(StyleAttribute attr) const;
    QList<double> doubleListValue(StyleAttribute attr) const;

    /// Out-parameter forms: return whether the attribute is defined and leave the
    /// out-parameter untouched when it is not.
    bool intValue(StyleAttribute attr, int& out) const;
    bool doubleValue(StyleAttribute attr, double& out) const;
    bool boolValue(StyleAttribute attr, bool& out) const;
    bool stringValue(StyleAttribute attr, QString& out) const;
    bool enumValue(StyleAttribute attr, int& out) const;

    /// Geometry of fixed-size views. Undefined reads are a programming error; they
    /// are reported and give 1, so that nothing divides by zero downstream.
    int width() const;
    int height() const;
    int x() const;
    int y() const;

    /// The font size for the current GUI language (FontSize in factory mode).
    int fontSize() const;
    static StyleAttribute fontSizeAttributeforLanguage();
    static StyleAttribute fallbackFontSizeAttributeForLanguage();

    /// A listener's slot restyled() is invoked whenever this style is re-evaluated.
    void registerListener(QObject* listener) const;
    void unregisterListener(QObject* listener) const;

    /// The integer of an enum value text: pieces separated by "|", each matched
    /// case-insensitively, OR-ed together.
    static int getEnum(StyleAttribute attr, const QString& text);

    static void addAttribute(StyleAttribute attr, const QString& key, StyleAttributeType type);
    static void addEnumAttribute(StyleAttribute attr, const QString& key, QHash<QString, int> values);
    static void addAttributeTypes();

    /// Registry queries for the parser and tools.
    static bool attributeForKey(const QString& key, StyleAttribute& attr);
    static StyleAttributeType attributeType(StyleAttribute attr);
    static QString attributeKey(StyleAttribute attr);

private:
    static bool isNormalized(const QString& styleText);
    static bool enumValueOf(StyleAttribute attr, const QString& text, int& out);
    static QVariant valueOf(const StyleData* data, StyleAttribute attr);
    int requiredGeometry(StyleAttribute attr, const char* message) const;

    TExplicitlySharedDataPointer<StyleData> mData;

    static QHash<QString, StyleAttribute> sAttributeMap;
    static QHash<StyleAttribute, StyleAttributeType> sAttributeTypes;
    static QHash<StyleAttribute, QHash<QString, int>> sEnumAttributes;
};

Q_DECLARE_METATYPE(Style)
