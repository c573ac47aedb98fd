#include "control/Label.h"
#include "support/GLTestContext.h"
#include "support/PaintComparison.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace {

// A label drawn from its kept glyph runs must look like the raster engine's text
// of the same lines, in every arrangement a style can ask for.
class LabelGLTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(mGL.isValid()); }

    ::testing::AssertionResult looksRight(const QString& text, const QString& styleText)
    {
        DisplayView root(nullptr, "root");
        Label label(&root, "label", text, styleText);
        label.resizeTo(240, 100);
        const auto paint = [&](QPainter& p) {
            label.drawViewAndChildren(p);
        };
        return PaintComparison::textAgrees(mCompare.engine(paint), mCompare.raster(paint));
    }

    GLTestContext mGL{QSize(240, 100)};
    PaintComparison mCompare{mGL, qRgba(250, 250, 250, 255)};
};

} // namespace

TEST_F(LabelGLTest, OneLineAlignedAndPadded)
{
    EXPECT_TRUE(
        looksRight(QStringLiteral("Outside 21 °C"),
                   QStringLiteral("FontSize:26; Color:#15181c; Alignment:right|bottom; LabelPadding:6,10")));
    EXPECT_TRUE(
        looksRight(QStringLiteral("Wipers"), QStringLiteral("Font:bold; FontSize:32; Alignment:center")));
}

TEST_F(LabelGLTest, WrappedCentredLinesWithSpacing)
{
    EXPECT_TRUE(
        looksRight(QStringLiteral("Charging will finish at 06:40 when the battery reaches its limit"),
                   QStringLiteral("FontSize:20; TextFlags:wordwrap; Alignment:hcenter|top; LineSpacing:4; "
                                  "Color:#1f6feb")));
}

TEST_F(LabelGLTest, ElidedAndShadowedText)
{
    EXPECT_TRUE(looksRight(QStringLiteral("Navigation to the nearest charging station with free connectors"),
                           QStringLiteral("FontSize:22; ElideMode:middle; Alignment:left|vcenter")));
    EXPECT_TRUE(looksRight(QStringLiteral("Shadowed"),
                           QStringLiteral("FontSize:40; Color:#ffffff; Shadow:1; ShadowColor:#80000000; "
                                          "ShadowOffset:2,2; Alignment:center")));
}
