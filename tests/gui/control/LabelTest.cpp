#include "control/Label.h"
#include "LogCapture.h"
#include "support/ControlFixture.h"
#include "support/QtPrinters.h"
#include "support/TouchRecorderView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

namespace {

const QChar kEllipsis(0x2026);
const QString kLong = QStringLiteral("Seat heating stays on until the cabin has reached its temperature");

struct LabelTest : ::testing::Test
{
    DisplayView root{nullptr, "root"};
    Label* label = new Label(&root, "label");

    LabelTest() { label->resizeTo(200, 100); }

    qreal lineHeight() const
    {
        const QFontMetricsF metrics(label->font());
        return metrics.ascent() + metrics.descent();
    }
    void paint()
    {
        QImage image(label->size(), QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        label->drawViewAndChildren(painter);
    }
};

} // namespace

TEST_F(LabelTest, TheStyleGivesFontColourAlignmentPaddingAndText)
{
    label->setStyle(Style(QStringLiteral(
        "Font:bold; FontSize:30; Color:#ff0000; Alignment:right|bottom; LabelPadding:4,8; Label:Range")));
    EXPECT_EQ(label->font().pixelSize(), 30);
    EXPECT_TRUE(label->font().bold());
    EXPECT_EQ(label->color().color(), QColor(255, 0, 0));
    EXPECT_EQ(label->alignment(), Qt::AlignRight | Qt::AlignBottom);
    EXPECT_EQ(label->labelPadding(), Padding(4, 8));
    EXPECT_EQ(label->text(), QStringLiteral("Range"));

    // Split alignments replace one axis each; LabelFlags align too.
    label->setStyle(Style(QStringLiteral("HorizontalAlignment:hcenter")));
    EXPECT_EQ(label->alignment(), Qt::AlignHCenter | Qt::AlignBottom);
    label->setStyle(Style(QStringLiteral("VerticalAlignment:top")));
    EXPECT_EQ(label->alignment(), Qt::AlignHCenter | Qt::AlignTop);
    Label other(&root, "other");
    other.setStyle(Style(QStringLiteral("LabelFlags:wordwrap|left")));
    EXPECT_EQ(other.alignment(), Qt::AlignLeft);
    EXPECT_TRUE(other.wordWrap());
    EXPECT_EQ(Label(&root, "plain", "x", "FontSize:20").font().pixelSize(), 20);
}

TEST_F(LabelTest, NaturalSizeIsOneLineUnconstrainedAndWrapsWhenGivenAWidth)
{
    label->setStyle(Style(QStringLiteral("FontSize:20; TextFlags:wordwrap; LabelPadding:5,10")));
    label->setText(kLong);
    const QFontMetricsF metrics(label->font());
    const QSizeF wide = label->naturalSize(-1);
    EXPECT_NEAR(wide.width(), std::ceil(metrics.horizontalAdvance(kLong)) + 20, 2);
    EXPECT_EQ(wide.height(), std::ceil(lineHeight()) + 10);

    const QSizeF narrow = label->naturalSize(220);
    EXPECT_LE(narrow.width(), 220);
    const int lines = int(std::lround((narrow.height() - 10) / lineHeight()));
    EXPECT_GE(lines, 3);
    EXPECT_EQ(narrow.height(), std::ceil(lines * lineHeight()) + 10);

    // Without wrapping a narrow label keeps one line, elided.
    label->setWordWrap(false);
    EXPECT_LE(label->naturalSize(220).width(), 220);
    EXPECT_EQ(label->naturalSize(220).height(), std::ceil(lineHeight()) + 10);
    // Line spacing sits between lines only.
    label->setWordWrap(true);
    label->setLineSpacing(6);
    EXPECT_EQ(label->naturalSize(220).height(), std::ceil(lines * lineHeight() + (lines - 1) * 6) + 10);
    EXPECT_EQ(Label(&root, "empty").naturalSize(100), QSizeF(0, 0));
}

TEST_F(LabelTest, TextThatDoesNotFitIsElided)
{
    label->setText(kLong);
    EXPECT_EQ(label->lineCount(), 1);
    EXPECT_TRUE(label->isElided());
    EXPECT_TRUE(label->lineText(0).endsWith(kEllipsis));
    EXPECT_TRUE(kLong.startsWith(label->lineText(0).chopped(1)));

    label->setElideMode(Qt::ElideLeft);
    EXPECT_TRUE(label->lineText(0).startsWith(kEllipsis));
    EXPECT_TRUE(kLong.endsWith(label->lineText(0).mid(1)));

    label->setElideMode(Qt::ElideNone);
    EXPECT_FALSE(label->isElided());
    EXPECT_EQ(label->lineText(0), kLong);

    // Two lines allowed: the second ends with the ellipsis because text is left over.
    label->setStyle(Style(QStringLiteral("TextFlags:wordwrap; NumberOfLines:2; ElideMode:right")));
    EXPECT_EQ(label->lineCount(), 2);
    EXPECT_FALSE(label->lineText(0).contains(kEllipsis));
    EXPECT_TRUE(label->lineText(1).endsWith(kEllipsis));

    // Text left over that would fit on the last line still shows that it was cut.
    label->setText(QStringLiteral("One\nTwo\nThree"));
    EXPECT_EQ(label->lineText(1), QStringLiteral("Two") + kEllipsis);
}

TEST_F(LabelTest, LineBreaksAndSingleLineFlags)
{
    label->setText(QStringLiteral("Inside\nOutside"));
    EXPECT_EQ(label->lineCount(), 2);
    EXPECT_EQ(label->lineText(1), QStringLiteral("Outside"));
    label->setStyle(Style(QStringLiteral("TextFlags:single")));
    EXPECT_EQ(label->lineCount(), 1);
    EXPECT_EQ(label->numberOfLines(), 1);
}

TEST_F(LabelTest, TheTextIsLaidOutOnlyWhenTextWidthOrFontChange)
{
    label->setText(kLong);
    paint();
    paint();
    EXPECT_EQ(label->layoutCount(), 1);

    label->setColor(SkinColor(Qt::red));
    label->setAlignment(Qt::AlignCenter);
    label->resizeTo(200, 60);
    label->setText(kLong);
    paint();
    EXPECT_EQ(label->layoutCount(), 1);

    label->setText(QStringLiteral("Range"));
    paint();
    EXPECT_EQ(label->layoutCount(), 2);
    label->resizeTo(150, 60);
    paint();
    EXPECT_EQ(label->layoutCount(), 3);
    QFont bigger = label->font();
    bigger.setPixelSize(40);
    label->setFont(bigger);
    label->setFont(bigger);
    paint();
    paint();
    EXPECT_EQ(label->layoutCount(), 4);
}

TEST_F(LabelTest, FitTextShrinksTheFontUntilTheLineFits)
{
    label->resizeTo(120, 40);
    label->setStyle(Style(QStringLiteral("FontSize:30")));
    label->setText(QStringLiteral("Recirculation"));
    ASSERT_TRUE(label->isElided());
    label->setFitText(true);
    EXPECT_FALSE(label->isElided());
    EXPECT_EQ(label->lineText(0), label->text());
    EXPECT_LE(label->naturalSize(120).width(), 120);
    EXPECT_GT(label->naturalSize(-1).width(), 120);
}

namespace {
struct LabelTouchTest : ControlFixture
{
    QStringList log;
    TouchRecorderView* button =
        new TouchRecorderView(device.views(), "button", QRect(100, 100, 200, 100), &log);
};
} // namespace

TEST_F(LabelTouchTest, TouchesGoThroughALabelUnlessTheStyleTakesThem)
{
    auto* label = new Label(device.views(), "caption", "Defrost");
    label->moveTo(100, 100);
    label->resizeTo(200, 100);
    tap(QPoint(150, 150));
    EXPECT_EQ(log.size(), 3);

    label->setStyle(Style(QStringLiteral("TouchEnabled:1")));
    log.clear();
    tap(QPoint(150, 150));
    EXPECT_TRUE(log.isEmpty());
}
