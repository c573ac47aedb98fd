#include "control/Button.h"
#include "DataValueManager.h"
#include "StyleManager.h"
#include "control/Label.h"
#include "support/ControlFixture.h"
#include "support/QtPrinters.h"
#include "support/ScopedStyleAssets.h"

#include <QBuffer>
#include <QSignalSpy>

namespace {

QByteArray png(const QColor& color)
{
    QImage image(24, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// A button at (100, 100) 200 x 80.
struct ButtonTest : ControlFixture
{
    Button* button = make("Start", "ButtonType:default");

    Button* make(const char* title, const char* styleText)
    {
        auto* made =
            new Button(device.views(), "button", QString::fromLatin1(title), QString::fromLatin1(styleText));
        made->moveTo(100, 100);
        made->resizeTo(200, 80);
        return made;
    }
};

} // namespace

TEST_F(ButtonTest, ClickedComesOnReleaseInsideOnly)
{
    QSignalSpy clicked(button, &Button::clicked);
    tap(QPoint(150, 140));
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_EQ(clicked.first().first().value<Button*>(), button);

    // Dragged out and released outside: no click.
    press(QPoint(150, 140));
    move(QPoint(500, 140));
    release(QPoint(500, 140));
    EXPECT_EQ(clicked.count(), 1);

    // Out and back in, then a long hold: still a click, though not a tap.
    QSignalSpy tapped(button, qOverload<ControlBase*>(&ControlBase::tapped));
    press(QPoint(150, 140));
    move(QPoint(500, 140));
    move(QPoint(160, 140));
    tick(2000);
    release(QPoint(160, 140));
    EXPECT_EQ(clicked.count(), 2);
    EXPECT_EQ(tapped.count(), 0);
}

TEST_F(ButtonTest, ToggleTypesSelectOnTapAndDeselectOnTheNext)
{
    for (const char* styleText : {"ButtonType:roundtoggle", "ButtonType:squaretoggle",
                                  "ButtonType:squaretoggleflat", "ButtonType:default; Toggle:1"}) {
        Button* toggle = make("Seat", styleText);
        EXPECT_TRUE(toggle->isToggle()) << styleText;
        tap(QPoint(150, 140));
        EXPECT_TRUE(toggle->isSelected()) << styleText;
        tap(QPoint(150, 140));
        EXPECT_FALSE(toggle->isSelected()) << styleText;
        // Held past the tap time: a click, but no toggle.
        press(QPoint(150, 140));
        tick(801);
        release(QPoint(150, 140));
        EXPECT_FALSE(toggle->isSelected()) << styleText;
        delete toggle;
    }
    tap(QPoint(150, 140));
    EXPECT_FALSE(button->isToggle());
    EXPECT_FALSE(button->isSelected());
}

TEST_F(ButtonTest, TheBackgroundFollowsTheStateThroughThePicturesOfTheStyle)
{
    ScopedStyleAssets assets;
    assets.write("up.png", png(Qt::gray));
    assets.write("down.png", png(Qt::darkGray));
    assets.write("on.png", png(Qt::blue));
    Button* pictured =
        make("Go", "ButtonImage:up.png; ButtonHighlightedImage:down.png; ButtonSelectedImage:on.png; Cuts:8");
    EXPECT_EQ(pictured->background().fileName(), assets.path("up.png"));
    EXPECT_EQ(pictured->background().cuts(), QMargins(8, 8, 8, 8));
    press(QPoint(150, 140));
    EXPECT_EQ(pictured->background().fileName(), assets.path("down.png"));
    release(QPoint(150, 140));
    pictured->setSelected(true);
    EXPECT_EQ(pictured->background().fileName(), assets.path("on.png"));

    // Without a highlighted picture a press keeps the normal one.
    pictured->setImages(DisplayImage(QStringLiteral("up.png")), DisplayImage(), DisplayImage());
    press(QPoint(150, 140));
    EXPECT_EQ(pictured->background().fileName(), assets.path("up.png"));
    release(QPoint(150, 140));
}

TEST_F(ButtonTest, DrawnLooksChangeWithStateColourAndType)
{
    const DisplayImage normal = button->background();
    ASSERT_FALSE(normal.isNull());
    press(QPoint(150, 140));
    const DisplayImage pressed = button->background();
    release(QPoint(150, 140));
    EXPECT_NE(pressed, normal);
    EXPECT_EQ(button->background(), normal);
    button->setSelected(true);
    EXPECT_NE(button->background(), normal);
    button->setSelected(false);
    button->setButtonColor(Button::Red);
    EXPECT_NE(button->background(), normal);

    // A custom button draws nothing of its own unless the style gives a colour.
    Button* custom = make("", "ButtonType:custom");
    EXPECT_TRUE(custom->background().isNull());
    custom->setStyle(Style(QStringLiteral("BackgroundColor:#208040; CornerRadius:0")));
    EXPECT_EQ(custom->background().image().pixel(0, 0), qRgb(0x20, 0x80, 0x40));
}

TEST_F(ButtonTest, TheTitleTakesTheTextStyleAndItsColourFollowsThePress)
{
    auto* styled =
        new Button(device.views(), "styled", QStringLiteral("Defrost"),
                   QStringLiteral("FontSize:28; Color:#102030; HighlightColor:#ff0000; X:100; Y:100; "
                                  "Width:300; Height:60; BackgroundColor:#c0c0c0"));
    Label* title = styled->titleLabel();
    EXPECT_EQ(title->font().pixelSize(), 28);
    EXPECT_EQ(title->color().color(), QColor(0x10, 0x20, 0x30));
    // The button's own geometry does not reach its label.
    EXPECT_EQ(title->rect(), QRect(0, 0, 300, 60));
    press(QPoint(150, 140));
    EXPECT_EQ(title->color().color(), QColor(255, 0, 0));
    release(QPoint(150, 140));
    EXPECT_EQ(title->color().color(), QColor(0x10, 0x20, 0x30));
    styled->disable();
    EXPECT_EQ(title->alpha(), float(ControlBase::kDisabledOpacity));

    // The type picks the title's size when the style does not.
    EXPECT_EQ(make("Small", "ButtonType:mini")->titleLabel()->font().pixelSize(), 18);
    EXPECT_EQ(make("", "Label:From style")->title(), QStringLiteral("From style"));
    EXPECT_EQ(make("Given", "Label:From style")->title(), QStringLiteral("Given"));
}

TEST_F(ButtonTest, IconAndTitleShareTheContentArea)
{
    QImage pixels(32, 32, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::white);
    Button* both = make("Fan", "ContentPadding:0,16; ImagePadding:0,4; InnerSpacing:10,0");
    both->setIcon(DisplayImage(pixels));
    // Icon from 16 + 4 = 20 to 52, then 4 padding and 10 spacing.
    EXPECT_EQ(both->titleLabel()->x(), 66);
    EXPECT_EQ(both->titleLabel()->width(), 200 - 16 - 66);
    const QSizeF natural = both->naturalSize(-1);
    EXPECT_EQ(natural.width(), 16 + 4 + 32 + 4 + 10 + both->titleLabel()->naturalSize(-1).width() + 16);

    Button* round = make("", "ButtonType:round");
    round->setIcon(DisplayImage(pixels));
    EXPECT_EQ(round->naturalSize(-1), QSizeF(96, 96));
}

TEST(ButtonStyles, TheShippedButtonStylesWork)
{
    ManualClock clock;
    DataValueManager::instance()->processPendingChanges();
    DisplayDevice device(800, 480);
    StyleManager::instance()->initialize();
    Button primary(device.views(), "primary", QStringLiteral("Drive"), QStringLiteral("Button/Primary"));
    EXPECT_EQ(primary.buttonColor(), Button::Blue);
    // The style's sizes are flex rules: they apply at the next frame.
    device.startFrame();
    EXPECT_EQ(primary.height(), 80);
    EXPECT_EQ(primary.touchPadding(), Padding(12));
    Button toggle(device.views(), "toggle", QStringLiteral("A/C"), QStringLiteral("Button/Toggle"));
    EXPECT_TRUE(toggle.isToggle());
    Button pictured(device.views(), "pictured", QStringLiteral("Map"), QStringLiteral("Button/Image"));
    EXPECT_FALSE(pictured.background().fileName().isEmpty());
}
