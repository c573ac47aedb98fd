#include "DisplayImage.h"
#include "DisplayView.h"
#include "LogCapture.h"
#include "Style.h"
#include "support/KtxWriter.h"
#include "support/QtPrinters.h"
#include "support/ScopedStyleAssets.h"

#include <QBuffer>
#include <QPainter>
#include <gtest/gtest.h>

namespace {

const QRgb kRed = qRgb(255, 0, 0);
const QRgb kBlue = qRgb(0, 0, 255);
const QRgb kGreen = qRgb(0, 255, 0);

// 12 x 12: red 4-pixel corners, green edges between them, a blue middle.
QImage ninePatchPixels()
{
    QImage image(12, 12, QImage::Format_ARGB32_Premultiplied);
    image.fill(kGreen);
    QPainter painter(&image);
    painter.fillRect(4, 4, 4, 4, QColor(kBlue));
    for (const QPoint corner : {QPoint(0, 0), QPoint(8, 0), QPoint(0, 8), QPoint(8, 8)})
        painter.fillRect(QRect(corner, QSize(4, 4)), QColor(kRed));
    return image;
}

QByteArray png(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

struct DisplayImageTest : ::testing::Test
{
    ScopedStyleAssets assets;
    LogCapture log;
    DisplayImageTest() { assets.write("patch.png", png(ninePatchPixels())); }
};

QImage paintRaster(const DisplayImage& image, const QSize& canvas, const QRect& target)
{
    QImage out(canvas, QImage::Format_ARGB32_Premultiplied);
    out.fill(Qt::white);
    QPainter painter(&out);
    image.draw(painter, target);
    return out;
}

} // namespace

TEST_F(DisplayImageTest, CopiesAndSameNamesShareOneSourceAndOneDecodedPicture)
{
    const int before = DisplayImage::sourceCount();
    {
        DisplayImage first(QStringLiteral("patch.png"));
        DisplayImage second(QStringLiteral("patch.png"));
        const DisplayImage copy = first;
        EXPECT_EQ(DisplayImage::sourceCount(), before + 1);
        EXPECT_EQ(first.fileName(), assets.path("patch.png"));
        EXPECT_EQ(second.size(), QSize(12, 12));
        EXPECT_EQ(first.image().constBits(), second.image().constBits());
        EXPECT_EQ(copy.texture(), second.texture());
        EXPECT_TRUE(first == second);
    }
    EXPECT_EQ(DisplayImage::sourceCount(), before);
    // Nothing held the old source: a changed file is read afresh.
    assets.write("patch.png", png(QImage(20, 10, QImage::Format_RGB32)));
    const DisplayImage changed(QStringLiteral("patch.png"));
    EXPECT_EQ(changed.size(), QSize(20, 10));
    EXPECT_FALSE(changed.hasAlpha());
}

TEST_F(DisplayImageTest, NameWithoutSuffixFindsThePngThenTheKtx)
{
    EXPECT_EQ(DisplayImage(QStringLiteral("patch")).fileName(), assets.path("patch.png"));

    KtxWriter ktx;
    ktx.width = 8;
    ktx.height = 4;
    ktx.levels = {{QByteArray(8 * 4 * 4, char(0x7f))}};
    assets.write("packed.ktx", ktx.build());
    const DisplayImage compressed(QStringLiteral("packed"));
    EXPECT_EQ(compressed.fileName(), assets.path("packed.ktx"));
    EXPECT_EQ(compressed.size(), QSize(8, 4));
    // Only the GPU reads it: no pixels on the processor, nothing for a raster painter.
    EXPECT_TRUE(compressed.image().isNull());
    EXPECT_EQ(paintRaster(compressed, QSize(8, 4), QRect(0, 0, 8, 4)).pixel(2, 2), qRgb(255, 255, 255));
    EXPECT_TRUE(log.assertions().isEmpty());
}

TEST_F(DisplayImageTest, MissingAndUnreadableFilesAreNamedOnceAndGiveNullImages)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(DisplayImage(QStringLiteral("absent.png")).isNull());
    assets.write("broken.png", "not a picture");
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(DisplayImage(QStringLiteral("broken.png")).isNull());
    EXPECT_EQ(log.assertions(), QStringList({"Image file not found: " + assets.path("absent.png"),
                                             "Image file could not be read: " + assets.path("broken.png")}));
    EXPECT_TRUE(DisplayImage(QString()).isNull());
    EXPECT_EQ(log.assertions().size(), 2);
}

TEST_F(DisplayImageTest, StylesGiveCutsAndFill)
{
    const DisplayImage twoCuts = DisplayImage::fromStyle(
        Style(QStringLiteral("BackgroundImage:patch.png; Cuts:4,3; TileImage:1")), Style::BackgroundImage);
    EXPECT_EQ(twoCuts.cuts(), QMargins(4, 3, 4, 3));
    EXPECT_EQ(twoCuts.fill(), DisplayImage::Tile);

    const DisplayImage fourCuts = DisplayImage::fromStyle(
        Style(QStringLiteral("ButtonImage:patch.png; Cuts:1,2,3,4; ScaleImage:0")), Style::ButtonImage);
    EXPECT_EQ(fourCuts.cuts(), QMargins(1, 2, 3, 4));
    EXPECT_EQ(fourCuts.fill(), DisplayImage::Center);

    const DisplayImage oneCut =
        DisplayImage::fromStyle(Style(QStringLiteral("Image:patch.png; Cuts:5")), Style::Image);
    EXPECT_EQ(oneCut.cuts(), QMargins(5, 5, 5, 5));
    EXPECT_EQ(oneCut.fill(), DisplayImage::Stretch);

    const DisplayImage badCuts =
        DisplayImage::fromStyle(Style(QStringLiteral("Image:patch.png; Cuts:1,2,3")), Style::Image);
    EXPECT_EQ(badCuts.cuts(), QMargins());
    EXPECT_EQ(log.assertions(), QStringList({"Invalid cuts count: 3"}));

    EXPECT_TRUE(DisplayImage::fromStyle(Style(QStringLiteral("Cuts:4")), Style::Image).isNull());
}

TEST_F(DisplayImageTest, NinePatchKeepsCornersAndStretchesTheRest)
{
    DisplayImage image(QStringLiteral("patch.png"));
    image.setCuts(QMargins(4, 4, 4, 4));
    const QImage out = paintRaster(image, QSize(44, 24), QRect(2, 2, 40, 20));
    EXPECT_EQ(out.pixel(1, 1), qRgb(255, 255, 255));
    EXPECT_EQ(out.pixel(2, 2), kRed);
    EXPECT_EQ(out.pixel(5, 5), kRed);
    EXPECT_EQ(out.pixel(6, 6), kBlue);
    EXPECT_EQ(out.pixel(41, 21), kRed);
    EXPECT_EQ(out.pixel(38, 18), kRed);
    EXPECT_EQ(out.pixel(37, 17), kBlue);
    EXPECT_EQ(out.pixel(22, 3), kGreen);
    EXPECT_EQ(out.pixel(22, 12), kBlue);

    // Without cuts the whole picture stretches: the corners grow.
    image.setCuts(QMargins());
    EXPECT_EQ(paintRaster(image, QSize(44, 24), QRect(2, 2, 40, 20)).pixel(12, 6), kRed);
}

TEST_F(DisplayImageTest, TilesRepeatFromTheTopLeftAndCentredPicturesKeepTheirSize)
{
    DisplayImage image(QStringLiteral("patch.png"));
    image.setFill(DisplayImage::Tile);
    const QImage tiled = paintRaster(image, QSize(40, 20), QRect(0, 0, 30, 18));
    EXPECT_EQ(tiled.pixel(13, 13), kRed);                // second tile's top-left corner
    EXPECT_EQ(tiled.pixel(18, 18), qRgb(255, 255, 255)); // below the target
    EXPECT_EQ(tiled.pixel(29, 5), kBlue);                // third tile, cut at the right edge
    EXPECT_EQ(tiled.pixel(30, 5), qRgb(255, 255, 255));

    image.setFill(DisplayImage::Center);
    EXPECT_EQ(image.placement(QRect(0, 0, 31, 20)), QRect(9, 4, 12, 12));
    const QImage centred = paintRaster(image, QSize(31, 20), QRect(0, 0, 31, 20));
    EXPECT_EQ(centred.pixel(8, 10), qRgb(255, 255, 255));
    EXPECT_EQ(centred.pixel(9, 4), kRed);
    EXPECT_EQ(centred.pixel(15, 10), kBlue);
}

TEST_F(DisplayImageTest, AlphaIsReadFromTheDecodedPixels)
{
    QImage pixels(4, 2, QImage::Format_ARGB32);
    pixels.fill(Qt::transparent);
    pixels.setPixel(3, 1, qRgba(0, 0, 0, 200));
    const DisplayImage made(pixels);
    EXPECT_TRUE(made.hasAlpha());
    EXPECT_EQ(made.alphaAt(QPoint(3, 1)), 200);
    EXPECT_EQ(made.alphaAt(QPoint(0, 0)), 0);
    EXPECT_EQ(made.alphaAt(QPoint(4, 1)), 0);
    EXPECT_EQ(made.alphaAt(QPoint(-1, 0)), 0);
    EXPECT_TRUE(made.fileName().isEmpty());
}

TEST_F(DisplayImageTest, ViewsTakeBackgroundsFromStylesAndFitToThem)
{
    DisplayView view(nullptr, "panel");
    view.setStyle(
        Style(QStringLiteral("Width:100; Height:50; BackgroundImage:patch.png; Cuts:4; FitToImage:1")));
    EXPECT_EQ(view.size(), QSize(12, 12));
    EXPECT_EQ(view.backgroundImage().fileName(), assets.path("patch.png"));
    EXPECT_EQ(view.backgroundImage().cuts(), QMargins(4, 4, 4, 4));

    view.setBackground("patch.png", false);
    view.resizeTo(20, 20);
    QImage out(20, 20, QImage::Format_ARGB32_Premultiplied);
    out.fill(Qt::white);
    QPainter painter(&out);
    view.drawViewAndChildren(painter);
    painter.end();
    // Not stretched: the picture sits in the middle at its own size.
    EXPECT_EQ(out.pixel(3, 3), qRgb(255, 255, 255));
    EXPECT_EQ(out.pixel(4, 4), kRed);
    EXPECT_EQ(out.pixel(10, 10), kBlue);

    view.clearBackground();
    EXPECT_TRUE(view.backgroundImage().isNull());
}

TEST_F(DisplayImageTest, BackgroundColoursAreSkinNamesOrLiterals)
{
    DisplayView view(nullptr, "panel");
    view.setStyle(Style(QStringLiteral("Width:4; Height:4; BackgroundColor:#336699")));
    QImage out(4, 4, QImage::Format_ARGB32_Premultiplied);
    out.fill(Qt::white);
    {
        QPainter painter(&out);
        view.drawViewAndChildren(painter);
    }
    EXPECT_EQ(out.pixel(1, 1), qRgb(0x33, 0x66, 0x99));

    view.setStyle(Style(QStringLiteral("BackgroundColor:noSuchColour")));
    view.setStyle(Style(QStringLiteral("BackgroundColor:noSuchColour; Width:5")));
    EXPECT_EQ(log.assertions(), QStringList({"Unknown colour 'noSuchColour'"}));
}
