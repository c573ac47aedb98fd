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

class ScopedLanguage
{
public:
    explicit ScopedLanguage(int language, bool factoryMode = false)
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
    // "condition => message" of every assertion, all of which must come from gui/Style.
    QStringList assertions() const
    {
        QStringList out;
        for (const LogRecord& r : log.records()) {
            EXPECT_EQ(r.file, r.isAssertion ? "gui/Style" : "") << r.message.toStdString();
            out << r.condition + " => " + r.message;
        }
        return out;
    }

    ScopedStyleAssets assets;
    LogCapture log;
};

} // namespace

TEST_F(StyleTest, NormalizedStyleStringsShareOneData)
{
    EXPECT_EQ(Style::normalizedSpec(";; Width:1 ;\t;Height:2 ;"), "Width:1;Height:2");
    EXPECT_EQ(Style::normalizedSpec("Width:1;"), "Width:1");
    EXPECT_EQ(Style::normalizedSpec(" ; \n;"), "");

    Style spaced("Width:1; ;Height:2 ");
    EXPECT_EQ(spaced.data(), Style("Width:1;Height:2").data());
    EXPECT_EQ(spaced.styleText(), "Width:1;Height:2");
    EXPECT_NE(Style("Width:1"), spaced);
    EXPECT_TRUE(Style().isNull());
    EXPECT_TRUE(Style(" ;; ").isNull());
    EXPECT_EQ(Style().intValue(Style::Width), 0);
    EXPECT_EQ(Style(QString(5000, QChar(';')) + "Width:2").styleText(), "Width:2");
    EXPECT_TRUE(assertions().isEmpty());
}

TEST_F(StyleTest, DataOutlivesTheRegistryWhileHandlesHoldIt)
{
    Style kept("Width:3");
    EXPECT_EQ(kept.data()->ref.loadRelaxed(), 2); // the handle and the registry
    Singleton<StyleManager>::reset();
    EXPECT_EQ(kept.data()->ref.loadRelaxed(), 1);
    EXPECT_EQ(kept.width(), 3);
    EXPECT_NE(Style("Width:3").data(), kept.data());
}

TEST_F(StyleTest, NumbersAreRealsAndReadersConvert)
{
    Style s(
        "Width:10.6; Height:1e12; X:-1e12; Y:nan; Alpha:0.25; Label:42; Color:#fff; Shadow:true; Toggle:0; "
        "FitText:1; Continuous:false");
    EXPECT_EQ(s.data()->values().value(Style::Width).userType(), int(QMetaType::Double));
    EXPECT_EQ(s.data()->values().value(Style::Color).userType(), int(QMetaType::QString));
    EXPECT_EQ(s.intValue(Style::Width), 11);
    EXPECT_EQ(s.intValue(Style::Height), std::numeric_limits<int>::max());
    EXPECT_EQ(s.intValue(Style::X), std::numeric_limits<int>::min());
    EXPECT_EQ(s.intValue(Style::Y), 0);
    EXPECT_DOUBLE_EQ(s.doubleValue(Style::Alpha), 0.25);
    EXPECT_EQ(s.stringValue(Style::Label), "42");
    EXPECT_EQ(s.stringValue(Style::Color), "#fff");
    EXPECT_TRUE(s.boolValue(Style::Shadow));
    EXPECT_FALSE(s.boolValue(Style::Toggle));
    EXPECT_TRUE(s.boolValue(Style::FitText));
    EXPECT_FALSE(s.boolValue(Style::Continuous));
    EXPECT_TRUE(assertions().isEmpty());
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
    EXPECT_EQ(assertions(), QStringList({"false => Invalid padding definition 1,2,3",
                                         "values.count() == 2 => Must have two items in a point '5'"}));
}

TEST_F(StyleTest, EnumsIgnoreCaseAndBlanksCombineFlagsAndReportBadValues)
{
    EXPECT_EQ(Style("Alignment:Left | VCenter").alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    EXPECT_EQ(Style("ButtonType:Medium").enumValue(Style::ButtonType), 2);
    EXPECT_EQ(Style("ButtonType:default").enumValue(Style::ButtonType), 2);
    EXPECT_EQ(Style("FlexDirection:rowReverse").enumValue(Style::FlexDirection), 3);
    EXPECT_EQ(Style("TextFlags:single|WordWrap").textFlag(), 256 | 4096);
    EXPECT_EQ(Style("ElideMode:left").elide(), Qt::ElideLeft);
    EXPECT_EQ(Style("Width:1").elide(), Qt::ElideNone);
    EXPECT_TRUE(assertions().isEmpty());

    EXPECT_FALSE(Style("Alignment:centre").isDefined(Style::Alignment));
    Style partly("Alignment:left|Centre; ButtonColor:purple");
    EXPECT_EQ(partly.enumValue(Style::Alignment), 1);
    EXPECT_FALSE(partly.isDefined(Style::ButtonColor));
    EXPECT_EQ(Style::getEnum(Style::Width, "left"), 0);
    const QString accepted =
        "' accepted values 'left,right,hcenter,top,bottom,vcenter,center,single,wordwrap'";
    EXPECT_EQ(assertions(),
              QStringList({"false => Invalid enum value 'centre' for attribute '33'" + accepted,
                           "false => Invalid enum value 'Centre' for attribute '33'" + accepted,
                           "false => Invalid enum value 'purple' for attribute '38'' accepted values "
                           "'default,blue,green,red'",
                           "sEnumAttributes.contains(attr) => Not an enum: 0"}));
}

TEST_F(StyleTest, MalformedPartsAreSkippedAndLaterPartsOverride)
{
    Style s("Width:10; Color:#ff:00; Height:; :5; Bogus:1; NoSuchStyle; Font:huge; Font:Bold; Height:20; "
            "InnerPadding:7; InnerPadding:1,2,3; Alignment:left; Alignment:right");
    EXPECT_EQ(s.width(), 10);
    EXPECT_EQ(s.height(), 20);
    EXPECT_FALSE(s.isDefined(Style::Color));
    EXPECT_FALSE(s.isDefined(Style::Font));
    EXPECT_EQ(s.padding(Style::InnerPadding), Padding(7));
    EXPECT_EQ(s.alignment(), Qt::AlignRight);
    EXPECT_EQ(
        assertions(),
        QStringList({"keyValue.count() == 2 => Must have key:value 'Color:#ff:00'",
                     "key.length() > 0 && value.length() > 0 => Key and value must have length 'Height:'",
                     "key.length() > 0 && value.length() > 0 => Key and value must have length ':5'",
                     "sAttributeMap.contains(name) => Unknown attribute 'Bogus'!",
                     "false => Missing style 'NoSuchStyle'", "false => Unknown font name huge",
                     "false => Unknown font name Bold", "false => Invalid padding definition 1,2,3"}));
}

TEST_F(StyleTest, UndefinedReadsKeepOutParametersAndGeometryGivesOne)
{
    Style empty;
    EXPECT_EQ(empty.width() + empty.height() + empty.x() + empty.y(), 4);
    EXPECT_EQ(assertions(), QStringList({"false => undefined width", "false => undefined height",
                                         "false => undefined x", "false => undefined y"}));
    log.clear();
    Style s("Width:0; X:-4; Alpha:0; Shadow:0; Label:x; Border:none");
    EXPECT_EQ(s.width(), 0);
    EXPECT_EQ(s.x(), -4);
    EXPECT_TRUE(assertions().isEmpty());

    int i = -7, e = -7;
    double d = -7;
    bool b = true;
    QString text = "keep";
    EXPECT_FALSE(s.intValue(Style::Height, i) || s.doubleValue(Style::Scale, d) ||
                 s.boolValue(Style::Toggle, b) || s.stringValue(Style::Color, text) ||
                 s.enumValue(Style::ElideMode, e));
    EXPECT_TRUE(i == -7 && d == -7 && b && text == "keep" && e == -7);
    EXPECT_TRUE(s.intValue(Style::Width, i) && s.doubleValue(Style::Alpha, d) &&
                s.boolValue(Style::Shadow, b) && s.stringValue(Style::Label, text) &&
                s.enumValue(Style::Border, e));
    EXPECT_TRUE(i == 0 && d == 0 && !b && text == "x" && e == 0);
}

TEST_F(StyleTest, FontsComeFromTheFontManagerWithBoldAndItalicApplied)
{
    EXPECT_EQ(FontManager::instance()->fontNames(),
              QStringList({"bold", "boldMono", "book", "bookMono", "light", "lightMono", "medium",
                           "mediumMono", "mono", "normal"}));
    const QFont bold = Style("Font:bold").font();
    EXPECT_EQ(bold.family(), "DejaVu Sans");
    EXPECT_EQ(bold.weight(), int(QFont::Bold));
    const QFont mono = Style("ValueFont:lightMono; Italic:1; Bold:true").font(Style::ValueFont);
    EXPECT_EQ(mono.family(), "DejaVu Sans Mono");
    EXPECT_TRUE(mono.fixedPitch() && mono.italic() && mono.bold());
    EXPECT_FALSE(Style("Font:bold; Bold:0").font().bold());
    EXPECT_LT(Style("Font:light").font().weight(), Style("Font:book").font().weight());
    EXPECT_LT(Style("Font:book").font().weight(), Style("Font:medium").font().weight());
}

TEST_F(StyleTest, EveryAttributeIsRegisteredAndStyleIsAMetaType)
{
    assets.manager(); // its construction registers the attributes
    QSet<QString> keys;
    for (int n = 0; n < Style::kAttributeCount; ++n) {
        const QString key = Style::attributeKey(Style::StyleAttribute(n));
        Style::StyleAttribute back;
        ASSERT_TRUE(Style::attributeForKey(key, back)) << n;
        EXPECT_EQ(back, n) << key.toStdString();
        keys.insert(key);
    }
    EXPECT_EQ(keys.size(), Style::kAttributeCount);
    EXPECT_EQ(Style::attributeType(Style::Padding), Style::RealListType);
    EXPECT_EQ(Style::attributeType(Style::InnerPadding), Style::PaddingType);
    EXPECT_EQ(Style::attributeType(Style::LabelFlags), Style::EnumType);

    Style s("Width:3");
    EXPECT_EQ(QMetaType::type("Style"), qMetaTypeId<Style>());
    EXPECT_EQ(VariantConverter::convertToString(QVariant::fromValue(s)), "Width:3");
    EXPECT_EQ(VariantConverter::convertFromString(qMetaTypeId<Style>(), " Width:3 ;").value<Style>(), s);
}

TEST_F(StyleTest, FontSizeFollowsTheLanguageThenItsFallback)
{
    // Every size differs, so the size read names the attribute chosen.
    Style all("FontSize:1; FontSizeChinese:2; FontSizeJapanese:3; FontSizeKorean:4; FontSizeGerman:5; "
              "FontSizeItalian:6; FontSizeDutch:7; FontSizeFrench:8; FontSizeSpanish:9; FontSizeSwedish:10");
    Style fallback("FontSize:1; FontSizeChinese:2");
    const struct
    {
        int language;
        bool factory;
        int chosen;
        int fallback;
    } table[] = {{25, false, 2, 2}, {1000, false, 2, 2}, {1003, false, 2, 2}, {59, false, 3, 2},
                 {66, false, 4, 2}, {42, false, 5, 1},   {58, false, 6, 1},   {30, false, 7, 1},
                 {37, false, 8, 1}, {1004, false, 8, 1}, {111, false, 9, 1},  {114, false, 10, 1},
                 {31, false, 1, 1}, {1001, false, 1, 1}, {25, true, 1, 1},    {42, true, 1, 1}};
    for (const auto& row : table) {
        ScopedLanguage language(row.language, row.factory);
        EXPECT_EQ(all.fontSize(), row.chosen) << row.language << " " << row.factory;
        EXPECT_EQ(fallback.fontSize(), row.fallback) << row.language << " " << row.factory;
    }
    ScopedLanguage swedish(QLocale::Swedish);
    EXPECT_EQ(Style("FontSizeGerman:18").fontSize(), 0);
}
