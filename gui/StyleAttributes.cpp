// The attribute registry of Style: keys, value kinds and enum tables.
#include "Style.h"

#include "Logger.h"

#include <QVector>
#include <algorithm>

namespace {

static const char* const kLogSource = "gui/Style";

// Accepted values in the order of their numbers (names break ties), which is how
// the tables read below.
QString acceptedValues(const QHash<QString, int>& table)
{
    QVector<QPair<int, QString>> entries;
    entries.reserve(table.size());
    for (auto it = table.cbegin(); it != table.cend(); ++it)
        entries.append(qMakePair(it.value(), it.key()));
    std::sort(entries.begin(), entries.end());
    QStringList names;
    for (const auto& entry : qAsConst(entries))
        names.append(entry.second);
    return names.join(QLatin1Char(','));
}

} // namespace

QHash<QString, Style::StyleAttribute> Style::sAttributeMap;
QHash<Style::StyleAttribute, Style::StyleAttributeType> Style::sAttributeTypes;
QHash<Style::StyleAttribute, QHash<QString, int>> Style::sEnumAttributes;

void Style::addAttribute(StyleAttribute attr, const QString& key, StyleAttributeType type)
{
    sAttributeMap.insert(key, attr);
    sAttributeTypes.insert(attr, type);
}

void Style::addEnumAttribute(StyleAttribute attr, const QString& key, QHash<QString, int> values)
{
    addAttribute(attr, key, EnumType);
    sEnumAttributes.insert(attr, values);
}

bool Style::attributeForKey(const QString& key, StyleAttribute& attr)
{
    const auto it = sAttributeMap.constFind(key);
    if (it == sAttributeMap.cend())
        return false;
    attr = it.value();
    return true;
}

Style::StyleAttributeType Style::attributeType(StyleAttribute attr)
{
    return sAttributeTypes.value(attr, StringType);
}

QString Style::attributeKey(StyleAttribute attr)
{
    return sAttributeMap.key(attr);
}

int Style::getEnum(StyleAttribute attr, const QString& text)
{
    int flags = 0;
    enumValueOf(attr, text, flags);
    return flags;
}

bool Style::enumValueOf(StyleAttribute attr, const QString& text, int& out)
{
    const auto tableIt = sEnumAttributes.constFind(attr);
    if (tableIt == sEnumAttributes.cend()) {
        Logger::logAssert("sEnumAttributes.contains(attr)", QStringLiteral("Not an enum: %1").arg(int(attr)),
                          kLogSource, __LINE__);
        return false;
    }
    const QHash<QString, int>& table = tableIt.value();
    int flags = 0;
    bool matched = false;
    for (const QStringRef& raw : text.splitRef(QLatin1Char('|'))) {
        const QString piece = raw.trimmed().toString();
        const auto it = table.constFind(piece.toLower());
        if (it == table.cend()) {
            ORBIS_FAIL(QStringLiteral("Invalid enum value '%1' for attribute '%2'' accepted values '%3'")
                           .arg(piece, QString::number(int(attr)), acceptedValues(table)));
            continue;
        }
        flags |= it.value();
        matched = true;
    }
    out = flags;
    return matched;
}

void Style::addAttributeTypes()
{
    if (!sAttributeMap.isEmpty())
        return;

    const QHash<QString, int> alignment{{"left", 1},     {"right", 2},    {"hcenter", 4},
                                        {"top", 32},     {"bottom", 64},  {"vcenter", 128},
                                        {"center", 132}, {"single", 256}, {"wordwrap", 4096}};
    const QHash<QString, int> flexAlign{
        {"auto", 0}, {"flexstart", 1}, {"center", 2}, {"flexend", 3}, {"stretch", 4}};

    // Geometry.
    addAttribute(Width, "Width", IntType);
    addAttribute(Height, "Height", IntType);
    addAttribute(Widths, "Widths", IntListType);
    addAttribute(X, "X", IntType);
    addAttribute(Y, "Y", IntType);
    addAttribute(Bottom, "Bottom", IntType);
    addAttribute(Right, "Right", IntType);
    addAttribute(InnerSpacing, "InnerSpacing", PointType);
    addAttribute(SegmentWidth, "SegmentWidth", IntType);
    addAttribute(FlowWidth, "FlowWidth", IntType);
    addAttribute(HorizontalPadding, "HorizontalPadding", IntType);
    addAttribute(HorizontalOffset, "HorizontalOffset", IntType);
    addAttribute(FixedHeight, "FixedHeight", BoolType);
    addAttribute(FixedWidth, "FixedWidth", BoolType);

    // Paddings.
    addAttribute(InnerPadding, "InnerPadding", PaddingType);
    addAttribute(ContentPadding, "ContentPadding", PaddingType);
    addAttribute(ImagePadding, "ImagePadding", PaddingType);
    addAttribute(LabelPadding, "LabelPadding", PaddingType);
    addAttribute(ShadowPadding, "ShadowPadding", PaddingType);
    addAttribute(TouchPadding, "TouchPadding", PaddingType);
    addAttribute(LayoutMargin, "LayoutMargin", PaddingType);

    // Colours and painting.
    addAttribute(Alpha, "Alpha", RealType);
    addAttribute(Color, "Color", StringType);
    addAttribute(ShadowColor, "ShadowColor", StringType);
    addAttribute(HighlightColor, "HighlightColor", StringType);
    addAttribute(HighlightShadowColor, "HighlightShadowColor", StringType);
    addAttribute(Shadow, "Shadow", BoolType);
    addAttribute(ShadowOffset, "ShadowOffset", PointType);
    addAttribute(StrokeColor, "StrokeColor", StringType);
    addAttribute(StrokeWidth, "StrokeWidth", RealType);
    addAttribute(BackgroundColor, "BackgroundColor", StringType);
    addAttribute(CornerRadius, "CornerRadius", RealType);
    addAttribute(VerticalDivider, "VerticalDivider", BoolType);
    addAttribute(DividerColor1, "DividerColor1", StringType);
    addAttribute(DividerColor2, "DividerColor2", StringType);
    addAttribute(ApplyToChildren, "ApplyToChildren", BoolType);
    addEnumAttribute(Border, "Border", {{"none", 0}, {"line", 1}, {"rounded", 2}, {"custom", 3}});

    // Text.
    addAttribute(Font, "Font", FontType);
    addAttribute(ValueFont, "ValueFont", FontType);
    addAttribute(FontSize, "FontSize", IntType);
    addAttribute(FontSizeChinese, "FontSizeChinese", IntType);
    addAttribute(FontSizeJapanese, "FontSizeJapanese", IntType);
    addAttribute(FontSizeKorean, "FontSizeKorean", IntType);
    addAttribute(FontSizeGerman, "FontSizeGerman", IntType);
    addAttribute(FontSizeItalian, "FontSizeItalian", IntType);
    addAttribute(FontSizeDutch, "FontSizeDutch", IntType);
    addAttribute(FontSizeFrench, "FontSizeFrench", IntType);
    addAttribute(FontSizeSpanish, "FontSizeSpanish", IntType);
    addAttribute(FontSizeSwedish, "FontSizeSwedish", IntType);
    addAttribute(LetterSpacing, "LetterSpacing", RealType);
    addAttribute(Label, "Label", StringType);
    addAttribute(Bold, "Bold", BoolType);
    addAttribute(Italic, "Italic", BoolType);
    addAttribute(FitText, "FitText", BoolType);
    addAttribute(InvalidText, "InvalidText", StringType);
    addAttribute(Precision, "Precision", RealType);
    addAttribute(NumberOfLines, "NumberOfLines", IntType);
    addAttribute(LineSpacing, "LineSpacing", IntType);
    addEnumAttribute(Alignment, "Alignment", alignment);
    addAttribute(Alignments, "Alignments", AlignmentListType);
    sEnumAttributes.insert(Alignments, alignment);
    addEnumAttribute(HorizontalAlignment, "HorizontalAlignment", alignment);
    addEnumAttribute(VerticalAlignment, "VerticalAlignment", alignment);
    addEnumAttribute(LabelFlags, "LabelFlags", alignment);
    addEnumAttribute(TextFlags, "TextFlags", {{"single", 256}, {"wordwrap", 4096}});
    addEnumAttribute(ElideMode, "ElideMode", {{"left", 0}, {"right", 1}, {"middle", 2}, {"none", 3}});

    // Buttons, switches and other controls.
    addEnumAttribute(ButtonType, "ButtonType",
                     {{"mini", 0},
                      {"small", 1},
                      {"default", 2},
                      {"medium", 2},
                      {"large", 3},
                      {"extralarge", 4},
                      {"defaultblue", 5},
                      {"round", 6},
                      {"roundtoggle", 7},
                      {"squaretoggleflat", 8},
                      {"square", 9},
                      {"squaretoggle", 10},
                      {"custom", 11}});
    addEnumAttribute(ButtonColor, "ButtonColor", {{"default", 0}, {"blue", 1}, {"green", 2}, {"red", 3}});
    addAttribute(Toggle, "Toggle", BoolType);
    addAttribute(TouchWhenHighlight, "TouchWhenHighlight", BoolType);
    addAttribute(TapAnimationDelay, "TapAnimationDelay", IntType);
    addAttribute(TouchEnabled, "TouchEnabled", BoolType);
    addEnumAttribute(SwitchType, "SwitchType", {{"small", 0}, {"toggle", 1}, {"medium", 2}, {"large", 3}});
    addAttribute(FlipValue, "FlipValue", BoolType);
    addAttribute(Continuous, "Continuous", BoolType);
    addAttribute(ThumbVisible, "ThumbVisible", BoolType);
    addEnumAttribute(
        SpinnerType, "SpinnerType",
        {{"default", 0}, {"small", 1}, {"smallbright", 2}, {"smalldark", 3}, {"media", 4}, {"v3media", 5}});

    // Images.
    addAttribute(Cuts, "Cuts", IntListType);
    addAttribute(ImageCount, "ImageCount", IntType);
    addAttribute(ScaleImage, "ScaleImage", BoolType);
    addAttribute(TileImage, "TileImage", BoolType);
    addAttribute(VerticalSprite, "VerticalSprite", BoolType);
    addAttribute(Scale, "Scale", RealType);
    addAttribute(Prescale, "Prescale", RealType);
    addAttribute(BackgroundImage, "BackgroundImage", StringType);
    addAttribute(OverlayFrameImage, "OverlayFrameImage", StringType);
    addAttribute(FitToImage, "FitToImage", BoolType);
    addAttribute(ButtonImage, "ButtonImage", StringType);
    addAttribute(ButtonHighlightedImage, "ButtonHighlightedImage", StringType);
    addAttribute(ButtonSelectedImage, "ButtonSelectedImage", StringType);
    addAttribute(SpinnerImage, "SpinnerImage", StringType);
    addAttribute(Image, "Image", StringType);
    addEnumAttribute(ImageResizeBehavior, "ImageResizeBehavior",
                     {{"resizenone", 0}, {"resizeview", 1}, {"resizeimage", 2}, {"resizetofitview", 3}});

    // Flex layout; the numbers equal the layout engine's own enumerations.
    addEnumAttribute(Direction, "Direction", {{"ltr", 1}, {"rtl", 2}});
    addEnumAttribute(FlexDirection, "FlexDirection",
                     {{"column", 0}, {"columnreverse", 1}, {"row", 2}, {"rowreverse", 3}});
    addEnumAttribute(
        JustifyContent, "JustifyContent",
        {{"flexstart", 0}, {"center", 1}, {"flexend", 2}, {"spacebetween", 3}, {"spacearound", 4}});
    addEnumAttribute(AlignContent, "AlignContent", flexAlign);
    addEnumAttribute(AlignItems, "AlignItems", flexAlign);
    addEnumAttribute(AlignSelf, "AlignSelf", flexAlign);
    addEnumAttribute(FlexWrap, "FlexWrap", {{"nowrap", 0}, {"wrap", 1}});
    addEnumAttribute(PositionType, "PositionType", {{"relative", 0}, {"absolute", 1}});
    addAttribute(Flex, "Flex", RealType);
    addAttribute(Margin, "Margin", RealListType);
    addAttribute(Padding, "Padding", RealListType);
    addAttribute(MinWidth, "MinWidth", RealType);
    addAttribute(MinHeight, "MinHeight", RealType);
    addAttribute(MaxWidth, "MaxWidth", RealType);
    addAttribute(MaxHeight, "MaxHeight", RealType);
}
