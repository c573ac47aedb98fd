#include <ImageSlice.h>

#include <QPixmap>
#include <gtest/gtest.h>
#include <support/QtPrinters.h>

using namespace gfx;

TEST(ImageSliceTest, PartsOfThePictureAndOfTheTarget)
{
    QImage image(30, 20, QImage::Format_RGB32);
    const ImageSlice slice(QPixmap::fromImage(image), QMargins(5, 4, 10, 6));
    EXPECT_FALSE(slice.isNull());
    EXPECT_FALSE(slice.hasAlpha());
    EXPECT_EQ(slice.source(ImageSlice::TopLeft), QRect(0, 0, 5, 4));
    EXPECT_EQ(slice.source(ImageSlice::Center), QRect(5, 4, 15, 10));
    EXPECT_EQ(slice.source(ImageSlice::BottomRight), QRect(20, 14, 10, 6));
    const QRect target(100, 50, 200, 40);
    EXPECT_EQ(slice.target(ImageSlice::TopRight, target), QRect(290, 50, 10, 4));
    EXPECT_EQ(slice.target(ImageSlice::Left, target), QRect(100, 54, 5, 30));
    EXPECT_EQ(slice.target(ImageSlice::Bottom, target), QRect(105, 84, 185, 6));
}

TEST(ImageSliceTest, CornersShrinkEvenlyInSmallTargets)
{
    QImage image(30, 20, QImage::Format_ARGB32);
    const ImageSlice slice(QPixmap::fromImage(image), QMargins(10, 4, 20, 6));
    EXPECT_TRUE(slice.hasAlpha());
    const QRect small(0, 0, 15, 5);
    EXPECT_EQ(slice.target(ImageSlice::TopLeft, small), QRect(0, 0, 5, 2));
    EXPECT_EQ(slice.target(ImageSlice::BottomRight, small), QRect(5, 2, 10, 3));
    EXPECT_TRUE(slice.target(ImageSlice::Center, small).isEmpty());
    EXPECT_TRUE(ImageSlice(QPixmap(), QMargins()).isNull());
}
