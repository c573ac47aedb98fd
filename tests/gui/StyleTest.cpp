#include "Style.h"
#include "DataValues.h"
#include "FontManager.h"
#include "LogCapture.h"
#include "StyleData.h"
#include "StyleManager.h"
#include "VariantConverter.h"
#include "support/ScopedStyleAssets.h"

#include <QLocale>
#include <gtest/gtest.h>
#include <limits>

namespace {

// "condition => message" of every assertion, all of which must come from gui/Style.
QStringList assertionsOf(const LogCapture& log)
{
    QStringList out;
    for (const LogRecord& r : log.records()) {
        if (!r.isAssertion)
            continue;
        EXPECT_EQ(r.file, "gui/Style") << r.message.toStdString();
        out << r.condition + " => " + r.message;
    }
    return out;
}

class ScopedLanguage
{
public:
    ScopedLanguage(int language, bool factoryMode = false)
        : mLanguage(GUI_language.value()), mFactory(GUI_factoryMode.value())
    {
        GUI_language.setValue(language);
        GUI_factoryMode.setValue(factoryMode);
    }
    ~ScopedLanguage()
    {
        GUI_language.setValue(mLanguage);
        GUI_factoryMode.setValue(mFactory);
    }

private:
    QVariant mLanguage;
    QVariant mFactory;
};

class StyleTest : public ::testing::Test
{
protected:
    ScopedStyleAssets assets;
    LogCapture log;
};

} // namespace

TEST_F(StyleTest, NormalizedSpecificationsShareOneData)
{
    EXPECT_EQ(Style::normalizedSpec(";; Width:1 ;\t;Height:2 ;"), "Width:1;Height:2");
    EXPECT_EQ(Style::normalizedSpec("Width:1;Height:2"), "Width:1;Height:2");
    EXPECT_EQ(Style::normalizedSpec(" ; \n;"), "");

    Style spaced("Width:1; ;Height:2 ");
    Style tight("Width:1;Height:2");
    EXPECT_EQ(spaced.data(), tight.data());
    EXPECT_EQ(spaced.spec(), "Width:1;Height:2");
    Style copy = spaced;
    EXPECT_EQ(copy, tight);
    EXPECT_NE(Style("Width:1"), tight);

    EXPECT_TRUE(Style().isNull());
    EXPECT_TRUE(Style(" ;; ").isNull());
    EXPECT_FALSE(Style().isDefined(Style::Width));
    EXPECT_EQ(Style().intValue(Style::Width), 0);
    EXPECT_TRUE(assertionsOf(log).isEmpty());
}

TEST_F(StyleTest, DataOutlivesTheRegistryWhileHandlesHoldIt)
{
    Style kept("Width:3");
    const int before = kept.data()->ref.loadRelaxed();
    EXPECT_EQ(before, 2); // the handle and the registry
    Singleton<StyleManager>::reset();
    EXPECT_EQ(kept.data()->ref.loadRelaxed(), 1);
    EXPECT_EQ(kept.width(), 3);
    // A new registry parses the same text into new data.
    EXPECT_NE(Style("Width:3").data(), kept.data());
}

TEST_F(StyleTest, NumbersAreRealsAndReadersConvert)
{
    Style s("Width:10.6; Height:1e12; X:-1e12; Alpha:0.25; Label:42; Color:#fff; Shadow:true; Toggle:0; "
            "FitText:1; Continuous:false");
    EXPECT_EQ(s.data()->values().value(Style::Width).userType(), int(QMetaType::Double));
    EXPECT_EQ(s.data()->values().value(Style::Color).userType(), int(QMetaType::QString));
    EXPECT_EQ(s.intValue(Style::Width), 11);
    EXPECT_EQ(s.intValue(Style::Height), std::numeric_limits<int>::max());
    EXPECT_EQ(s.intValue(Style::X), std::numeric_limits<int>::min());
    EXPECT_DOUBLE_EQ(s.doubleValue(Style::Alpha), 0.25);
    EXPECT_EQ(s.stringValue(Style::Label), "42");
    EXPECT_EQ(s.stringValue(Style::Color), "#fff");
    EXPECT_TRUE(s.boolValue(Style::Shadow));
    EXPECT_FALSE(s.boolValue(Style::Toggle));
    EXPECT_TRUE(s.boolValue(Style::FitText));
    EXPECT_FALSE(s.boolValue(Style::Continuous));
    EXPECT_TRUE(s.isDefined(Style::Continuous));
    EXPECT_TRUE(assertionsOf(log).isEmpty());
}

TEST_F(StyleTest, PaddingsPointsAndLists)
{
    Style s("InnerPadding:4; ContentPadding:4,8; LabelPadding:1, 2, 3, -4; ImagePadding:1,2,3; "
            "ShadowOffset:2,-3; InnerSpacing:5; Widths:100, 200,300; Margin:0,10.5,0,10.5; "
            "Alignments:left|top, right");
    EXPECT_EQ(s.padding(Style::InnerPadding), Padding(4, 4, 4, 4));
    EXPECT_EQ(s.padding(Style::ContentPadding), Padding(4, 8, 4, 8));
    EXPECT_EQ(s.padding(Style::LabelPadding), Padding(1, 2, 3, -4));
    EXPECT_FALSE(s.isDefined(Style::ImagePadding));
    EXPECT_EQ(s.pointValue(Style::ShadowOffset), QPoint(2, -3));
    EXPECT_FALSE(s.isDefined(Style::InnerSpacing));
    EXPECT_EQ(s.intListValue(Style::Widths), QList<int>({100, 200, 300}));
    EXPECT_EQ(s.doubleListValue(Style::Margin), QList<double>({0, 10.5, 0, 10.5}));
    EXPECT_EQ(s.alignments(), QList<Qt::Alignment>({Qt::AlignLeft | Qt::AlignTop, Qt::AlignRight}));
    EXPECT_EQ(assertionsOf(log), QStringList({"false => Invalid padding definition 1,2,3",
                                              "values.count() == 2 => Must have two items in a point '5'"}));
}

TEST_F(StyleTest, EnumsIgnoreCaseAndBlanksAndCombineFlags)
{
    EXPECT_EQ(Style("Alignment:Left | VCenter").enumValue(Style::Alignment), 129);
    EXPECT_EQ(Style("Alignment:Left | VCenter").alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    EXPECT_EQ(Style("ButtonType:Medium").enumValue(Style::ButtonType), 2);
    EXPECT_EQ(Style("ButtonType:default").enumValue(Style::ButtonType), 2);
    EXPECT_EQ(Style("FlexDirection:rowReverse").enumValue(Style::FlexDirection), 3);
    EXPECT_EQ(Style("AlignSelf:stretch").enumValue(Style::AlignSelf), 4);
    EXPECT_EQ(Style("TextFlags:single|WordWrap").textFlag(), 256 | 4096);
    EXPECT_EQ(Style("ElideMode:middle").elide(), Qt::ElideMiddle);
    EXPECT_EQ(Style("ElideMode:left").elide(), Qt::ElideLeft);
    EXPECT_EQ(Style("Width:1").elide(), Qt::ElideNone);
    EXPECT_TRUE(assertionsOf(log).isEmpty());
}

TEST_F(StyleTest, InvalidEnumValuesAreReportedWithTheAcceptedValues)
{
    Style wrong("Alignment:centre");
    EXPECT_FALSE(wrong.isDefined(Style::Alignment));
    Style partly("Alignment:left|centre; ButtonColor:purple");
    EXPECT_EQ(partly.enumValue(Style::Alignment), 1);
    EXPECT_FALSE(partly.isDefined(Style::ButtonColor));
    EXPECT_EQ(Style::getEnum(Style::Width, "left"), 0);

    const QString alignments = "left,right,hcenter,top,bottom,vcenter,center,single,wordwrap";
    EXPECT_EQ(
        assertionsOf(log),
        QStringList(
            {"false => Invalid enum value 'centre' for attribute '33'' accepted values '" + alignments + "'",
             "false => Invalid enum value 'centre' for attribute '33'' accepted values '" + alignments + "'",
             "false => Invalid enum value 'purple' for attribute '38'' accepted values "
             "'default,blue,green,red'",
             "sEnumAttributes.contains(attr) => Not an enum: 0"}));
}

TEST_F(StyleTest, MalformedPartsAreSkippedAndTheRestApplies)
{
    Style s("Width:10; Color:#ff:00; Height:; :5; Bogus:1; NoSuchStyle; Font:huge; Font:Bold; Height:20");
    EXPECT_EQ(s.width(), 10);
    EXPECT_EQ(s.height(), 20);
    EXPECT_FALSE(s.isDefined(Style::Color));
    EXPECT_FALSE(s.isDefined(Style::Font));
    EXPECT_EQ(
        assertionsOf(log),
        QStringList({"keyValue.count() == 2 => Must have key:value 'Color:#ff:00'",
                     "key.length() > 0 && value.length() > 0 => Key and value must have length 'Height:'",
                     "key.length() > 0 && value.length() > 0 => Key and value must have length ':5'",
                     "sAttributeMap.contains(name) => Unknown attribute 'Bogus'!",
                     "false => Missing style 'NoSuchStyle'", "false => Unknown font name huge",
                     "false => Unknown font name Bold"}));
}

TEST_F(StyleTest, LaterPartsOverrideEarlierOnesAttributeByAttribute)
{
    Style s(
        "Width:10; Height:5; Width:20; Alignment:left; Alignment:right; InnerPadding:1; InnerPadding:2,3");
    EXPECT_EQ(s.width(), 20);
    EXPECT_EQ(s.height(), 5);
    EXPECT_EQ(s.enumValue(Style::Alignment), 2);
    EXPECT_EQ(s.padding(Style::InnerPadding), Padding(2, 3, 2, 3));
    // A bad later value keeps the earlier good one.
    EXPECT_EQ(Style("InnerPadding:7; InnerPadding:1,2,3").padding(Style::InnerPadding), Padding(7));
}

TEST_F(StyleTest, GeometryReadersReportUndefinedAndReturnOne)
{
    Style empty;
    EXPECT_EQ(empty.width(), 1);
    EXPECT_EQ(empty.height(), 1);
    EXPECT_EQ(empty.x(), 1);
    EXPECT_EQ(empty.y(), 1);
    EXPECT_EQ(assertionsOf(log), QStringList({"false => undefined width", "false => undefined height",
                                              "false => undefined x", "false => undefined y"}));
    log.clear();
    Style placed("Width:10; X:0; Y:-4; Height:0");
    EXPECT_EQ(placed.width(), 10);
    EXPECT_EQ(placed.height(), 0);
    EXPECT_EQ(placed.x(), 0);
    EXPECT_EQ(placed.y(), -4);
    EXPECT_TRUE(assertionsOf(log).isEmpty());
}

TEST_F(StyleTest, OutParameterReadersLeaveUndefinedValuesUntouched)
{
    Style s("Width:0; Alpha:0; Shadow:0; Label:x; Border:none");
    int i = -7;
    double d = -7;
    bool b = true;
    QString text = "keep";
    int e = -7;
    EXPECT_FALSE(s.intValue(Style::Height, i));
    EXPECT_FALSE(s.doubleValue(Style::Scale, d));
    EXPECT_FALSE(s.boolValue(Style::Toggle, b));
    EXPECT_FALSE(s.stringValue(Style::Color, text));
    EXPECT_FALSE(s.enumValue(Style::ElideMode, e));
    EXPECT_EQ(i, -7);
    EXPECT_EQ(d, -7);
    EXPECT_TRUE(b);
    EXPECT_EQ(text, "keep");
    EXPECT_EQ(e, -7);

    EXPECT_TRUE(s.intValue(Style::Width, i));
    EXPECT_TRUE(s.doubleValue(Style::Alpha, d));
    EXPECT_TRUE(s.boolValue(Style::Shadow, b));
    EXPECT_TRUE(s.stringValue(Style::Label, text));
    EXPECT_TRUE(s.enumValue(Style::Border, e));
    EXPECT_EQ(i, 0);
    EXPECT_EQ(d, 0);
    EXPECT_FALSE(b);
    EXPECT_EQ(text, "x");
    EXPECT_EQ(e, 0);
}

TEST_F(StyleTest, FontsComeFromTheFontManagerWithBoldAndItalicApplied)
{
    const QStringList names = {"normal", "medium",     "light",     "book",     "bold",
                               "mono",   "mediumMono", "lightMono", "bookMono", "boldMono"};
    QStringList sorted = names;
    sorted.sort();
    EXPECT_EQ(FontManager::instance()->fontNames(), sorted);

    const QFont bold = Style("Font:bold").font();
    EXPECT_EQ(bold.family(), "DejaVu Sans");
    EXPECT_EQ(bold.weight(), int(QFont::Bold));
    EXPECT_FALSE(bold.italic());
    const QFont mono = Style("ValueFont:lightMono; Italic:1; Bold:true").font(Style::ValueFont);
    EXPECT_EQ(mono.family(), "DejaVu Sans Mono");
    EXPECT_TRUE(mono.fixedPitch());
    EXPECT_TRUE(mono.italic());
    EXPECT_TRUE(mono.bold());
    EXPECT_FALSE(Style("Font:bold; Bold:0").font().bold());
    EXPECT_LT(Style("Font:light").font().weight(), Style("Font:book").font().weight());
    EXPECT_LT(Style("Font:book").font().weight(), Style("Font:medium").font().weight());
}

TEST_F(StyleTest, EveryAttributeHasAKeyAndKind)
{
    Style::addAttributeTypes();
    QSet<QString> keys;
    for (int n = 0; n < Style::kAttributeCount; ++n) {
        const auto attr = Style::StyleAttribute(n);
        const QString key = Style::attributeKey(attr);
        ASSERT_FALSE(key.isEmpty()) << n;
        Style::StyleAttribute back;
        ASSERT_TRUE(Style::attributeForKey(key, back));
        EXPECT_EQ(back, attr) << key.toStdString();
        keys.insert(key);
    }
    EXPECT_EQ(keys.size(), Style::kAttributeCount);
    EXPECT_EQ(Style::attributeKey(Style::ThumbVisible), "ThumbVisible");
    EXPECT_EQ(Style::attributeType(Style::Padding), Style::RealListType);
    EXPECT_EQ(Style::attributeType(Style::InnerPadding), Style::PaddingType);
    EXPECT_EQ(Style::attributeType(Style::Alignments), Style::AlignmentListType);
    EXPECT_EQ(Style::attributeType(Style::LabelFlags), Style::EnumType);
}

TEST_F(StyleTest, RegisteredAsMetaTypeWithAVariantConverter)
{
    Style s("Width:3");
    EXPECT_EQ(QMetaType::type("Style"), qMetaTypeId<Style>());
    EXPECT_EQ(VariantConverter::convertToString(QVariant::fromValue(s)), "Width:3");
    const QVariant back = VariantConverter::convertFromString(qMetaTypeId<Style>(), " Width:3 ;");
    EXPECT_EQ(back.value<Style>(), s);
}

TEST_F(StyleTest, FontSizeFollowsTheLanguage)
{
    Style german("FontSize:20; FontSizeGerman:18");
    {
        ScopedLanguage l(QLocale::German);
        EXPECT_EQ(german.fontSize(), 18);
    }
    {
        ScopedLanguage l(QLocale::Swedish);
        EXPECT_EQ(german.fontSize(), 20);
    }
    {
        ScopedLanguage l(QLocale::German, true);
        EXPECT_EQ(german.fontSize(), 20);
    }
    // The CJK languages fall back to the Chinese size, the others to FontSize.
    Style cjk("FontSize:20; FontSizeChinese:24; FontSizeKorean:26");
    for (int language : {int(QLocale::Japanese), 1000, 1003}) {
        ScopedLanguage l(language);
        EXPECT_EQ(cjk.fontSize(), 24) << language;
    }
    {
        ScopedLanguage l(QLocale::Korean);
        EXPECT_EQ(cjk.fontSize(), 26);
    }
    {
        ScopedLanguage l(QLocale::French);
        EXPECT_EQ(cjk.fontSize(), 20);
    }
    {
        ScopedLanguage l(QLocale::Swedish);
        EXPECT_EQ(Style("FontSizeGerman:18").fontSize(), 0);
    }
}

TEST_F(StyleTest, LanguageTableOfFontSizeAttributes)
{
    const struct
    {
        int language;
        Style::StyleAttribute attr;
        Style::StyleAttribute fallback;
    } table[] = {
        {25, Style::FontSizeChinese, Style::FontSizeChinese},
        {1000, Style::FontSizeChinese, Style::FontSizeChinese},
        {1003, Style::FontSizeChinese, Style::FontSizeChinese},
        {59, Style::FontSizeJapanese, Style::FontSizeChinese},
        {66, Style::FontSizeKorean, Style::FontSizeChinese},
        {42, Style::FontSizeGerman, Style::FontSize},
        {58, Style::FontSizeItalian, Style::FontSize},
        {30, Style::FontSizeDutch, Style::FontSize},
        {37, Style::FontSizeFrench, Style::FontSize},
        {1004, Style::FontSizeFrench, Style::FontSize},
        {111, Style::FontSizeSpanish, Style::FontSize},
        {114, Style::FontSizeSwedish, Style::FontSize},
        {31, Style::FontSize, Style::FontSize},
        {1001, Style::FontSize, Style::FontSize},
    };
    for (const auto& row : table) {
        ScopedLanguage l(row.language);
        EXPECT_EQ(Style::fontSizeAttributeforLanguage(), row.attr) << row.language;
        EXPECT_EQ(Style::fallbackFontSizeAttributeForLanguage(), row.fallback) << row.language;
    }
    ScopedLanguage factory(25, true);
    EXPECT_EQ(Style::fontSizeAttributeforLanguage(), Style::FontSize);
    EXPECT_EQ(Style::fallbackFontSizeAttributeForLanguage(), Style::FontSize);
}

TEST_F(StyleTest, ArbitraryTextNeverLeavesAHalfBuiltStyle)
{
    const QStringList inputs = {QString(":::"),
                                QString(";;;"),
                                QString("|"),
                                QString("Alignment:|||"),
                                QString("InnerPadding:,,,"),
                                QString("ShadowOffset:,"),
                                QString("Widths:"),
                                QString("Width:nan; Height:inf"),
                                QString::fromUtf8("Label:\xc3\xa9\xe2\x82\xac; \xff\xfe"),
                                QString(QChar(0)) + "Width:1",
                                QString(5000, QChar(';')) + "Width:2"};
    for (const QString& input : inputs) {
        Style s(input);
        Style again(input);
        EXPECT_EQ(s, again) << input.toStdString();
        // Reading every attribute of every kind is safe.
        for (int n = 0; n < Style::kAttributeCount; ++n) {
            const auto attr = Style::StyleAttribute(n);
            s.intValue(attr);
            s.padding(attr);
            s.intListValue(attr);
        }
    }
    EXPECT_EQ(Style("Width:nan").intValue(Style::Width), 0);
    EXPECT_EQ(Style(QString(5000, QChar(';')) + "Width:2").spec(), "Width:2");
}
