#pragma once

#include "OrbisUIFrameworkExport.h"

#include "ControlBase.h"
#include "DisplayImage.h"
#include "SkinColor.h"

class Label;

/// A push button: a title label and/or an icon on a background that shows the
/// control's state. The look comes from the style: ButtonType and ButtonColor pick a
/// drawn shape and its colours; ButtonImage, ButtonHighlightedImage and
/// ButtonSelectedImage (with Cuts) replace the shape by pictures; BackgroundColor,
/// StrokeColor, StrokeWidth and CornerRadius adjust the shape; Color and
/// HighlightColor colour the title; Image is the icon, placed inside ImagePadding
/// (an icon drawn in one colour takes the title's colour);
/// ContentPadding keeps the content from the edges; Toggle:1 (or a toggle type)
/// makes a tap select and deselect the button.
class ORBIS_UI_EXPORT Button : public ControlBase
{
    Q_OBJECT

public:
    /// Values of the style's ButtonType.
    enum ButtonType
    {
        Mini = 0,
        Small = 1,
        Default = 2,
        Large = 3,
        ExtraLarge = 4,
        DefaultBlue = 5,
        Round = 6,
        RoundToggle = 7,
        SquareToggleFlat = 8,
        Square = 9,
        SquareToggle = 10,
        Custom = 11
    };
    /// Values of the style's ButtonColor.
    enum ButtonColor
    {
        DefaultColor = 0,
        Blue = 1,
        Green = 2,
        Red = 3
    };

    explicit Button(DisplayView* parent, const char* name = nullptr);
    Button(DisplayView* parent, const char* name, const QString& title, const QString& styleText = QString());
    ~Button() override;

    void setTitle(const QString& title);
    QString title() const;
    /// The title's label, made on first use.
    Label* titleLabel();
    void setIcon(const DisplayImage& icon);
    const DisplayImage& icon() const { return mIcon; }
    void setButtonType(ButtonType type);
    ButtonType buttonType() const { return ButtonType(mType); }
    void setButtonColor(ButtonColor color);
    ButtonColor buttonColor() const { return ButtonColor(mColor); }
    /// A toggle selects on a tap and deselects on the next; the toggle types are toggles.
    void setToggle(bool toggle);
    bool isToggle() const;
    /// Pictures per state instead of the drawn shape; a null picture falls back to
    /// the normal one.
    void setImages(const DisplayImage& normal, const DisplayImage& highlighted, const DisplayImage& selected);
    /// The background as it is drawn for the current state.
    const DisplayImage& background() const { return mBackground; }

    void setStyle(const Style& style) override;
    QSizeF naturalSize(double width) override;
    void draw(QPainter& painter) override;
    void released(int touch) override;
    void tapped(int touch, QPoint point) override;
    void stateChanged() override;
    void resized() override;
    void layoutImplChanged() override;
    void reskinned() override;
    QVariantMap toVariantMap() override;

signals:
    /// The finger was lifted inside the button.
    void clicked(Button* button);

private:
    struct Look;
    Look& look();
    void refreshLook();
    QRect contentRect() const;
    QRect iconRect() const;
    void placeTitle();
    int typeHeight() const;

    Label* mTitle = nullptr;
    DisplayImage mIcon;
    DisplayImage mBackground;
    /// The title's colour, which one-colour icons take too.
    SkinColor mIconColor;
    /// Styled pictures and colours; most buttons have none, so they live apart.
    std::unique_ptr<Look> mLook;
    Padding mContentPadding;
    quint8 mType = Default;
    quint8 mColor = DefaultColor;
    bool mToggle = false;
};
