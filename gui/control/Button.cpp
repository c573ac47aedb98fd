#include "Button.h"

#include "ControlShapes.h"
#include "CssLayout.h"
#include "FontManager.h"
#include "Label.h"
#include "Skin.h"

struct Button::Look
{
    DisplayImage normal;
    DisplayImage highlighted;
    DisplayImage selected;
    SkinColor fill;
    SkinColor stroke;
    SkinColor title;
    SkinColor highlightTitle;
    int strokeWidth = -1;
    int cornerRadius = -1;
    Padding imagePadding;
    int spacing = -1;
};

namespace {
constexpr int kDefaultSpacing = 12;
constexpr int kFlatStrokeWidth = 2;
constexpr int kSquareRadius = 4;

struct Palette
{
    const char* fill;
    const char* pressed;
    const char* text;
};

Palette paletteFor(int color)
{
    switch (color) {
    case Button::Blue:
        return {"buttonBlueColor", "buttonBluePressedColor", "onAccentColor"};
    case Button::Green:
        return {"buttonGreenColor", "buttonGreenPressedColor", "onAccentColor"};
    case Button::Red:
        return {"buttonRedColor", "buttonRedPressedColor", "onAccentColor"};
    default:
        return {"buttonColor", "buttonPressedColor", "foregroundColor"};
    }
}

QColor skin(const char* name)
{
    return Skin::parseColor(QLatin1String(name)).color();
}

// Height, corner radius and title size of each type, for what the style leaves open.
struct TypeMetrics
{
    int height;
    int radius;
    int fontSize;
};

TypeMetrics metricsFor(int type)
{
    switch (type) {
    case Button::Mini:
        return {40, 6, 18};
    case Button::Small:
        return {56, 8, 22};
    case Button::Large:
        return {88, 12, 30};
    case Button::ExtraLarge:
        return {112, 14, 34};
    case Button::Round:
    case Button::RoundToggle:
        return {96, -1, 26};
    case Button::Square:
    case Button::SquareToggle:
    case Button::SquareToggleFlat:
        return {72, kSquareRadius, 26};
    default:
        return {72, 10, 26};
    }
}
} // namespace

Button::Button(DisplayView* parent, const char* name) : ControlBase(parent)
{
    if (name)
        setViewName(QString::fromUtf8(name));
    // A flex parent binds the button before it is one.
    layoutImplChanged();
    refreshLook();
}

Button::Button(DisplayView* parent, const char* name, const QString& title, const QString& styleText)
    : Button(parent, name)
{
    if (!styleText.isEmpty())
        setStyle(Style(styleText));
    // A title given here wins over the style's Label.
    if (!title.isEmpty())
        setTitle(title);
}

Button::~Button() = default;

Button::Look& Button::look()
{
    if (!mLook)
        mLook = std::make_unique<Look>();
    return *mLook;
}

// Title and icon

Label* Button::titleLabel()
{
    if (!mTitle) {
        mTitle = new Label(this, "title");
        mTitle->setAlignment(Qt::AlignCenter);
        QFont font;
        FontManager::instance()->findFont(QStringLiteral("medium"), font);
        font.setPixelSize(metricsFor(mType).fontSize);
        mTitle->setFont(font);
        mTitle->applyTextStyle(style());
        placeTitle();
        refreshLook();
    }
    return mTitle;
}

void Button::setTitle(const QString& title)
{
    if (title.isEmpty() && !mTitle)
        return;
    titleLabel()->setText(title);
    placeTitle();
}

QString Button::title() const
{
    return mTitle ? mTitle->text() : QString();
}

void Button::setIcon(const DisplayImage& icon)
{
    if (icon == mIcon)
        return;
    mIcon = icon;
    placeTitle();
    update();
}

void Button::setButtonType(ButtonType type)
{
    if (type == mType)
        return;
    mType = type;
    refreshLook();
}

void Button::setButtonColor(ButtonColor color)
{
    if (color == mColor)
        return;
    mColor = color;
    refreshLook();
}

void Button::setToggle(bool toggle)
{
    mToggle = toggle;
}

bool Button::isToggle() const
{
    return mToggle || mType == RoundToggle || mType == SquareToggle || mType == SquareToggleFlat;
}

void Button::setImages(const DisplayImage& normal, const DisplayImage& highlighted,
                       const DisplayImage& selected)
{
    Look& l = look();
    l.normal = normal;
    l.highlighted = highlighted;
    l.selected = selected;
    refreshLook();
}

// Style

void Button::setStyle(const Style& style)
{
    ControlBase::setStyle(style);
    if (style.isNull())
        return;
    QString text;
    int number = 0;
    double real = 0;
    bool flag = false;
    if (style.stringValue(Style::BackgroundColor, text)) {
        // The colour fills the button's shape, not a square behind it.
        look().fill = Skin::parseColor(text);
        setBackgroundColor(SkinColor());
    }
    if (style.enumValue(Style::ButtonType, number))
        mType = quint8(number);
    if (style.enumValue(Style::ButtonColor, number))
        mColor = quint8(number);
    if (style.boolValue(Style::Toggle, flag))
        mToggle = flag;
    if (style.isDefined(Style::ButtonImage) || style.isDefined(Style::ButtonHighlightedImage) ||
        style.isDefined(Style::ButtonSelectedImage)) {
        Look& l = look();
        l.normal = DisplayImage::fromStyle(style, Style::ButtonImage);
        l.highlighted = DisplayImage::fromStyle(style, Style::ButtonHighlightedImage);
        l.selected = DisplayImage::fromStyle(style, Style::ButtonSelectedImage);
    }
    if (style.stringValue(Style::StrokeColor, text))
        look().stroke = Skin::parseColor(text);
    if (style.doubleValue(Style::StrokeWidth, real))
        look().strokeWidth = qRound(real);
    if (style.doubleValue(Style::CornerRadius, real))
        look().cornerRadius = qRound(real);
    if (style.stringValue(Style::Color, text))
        look().title = Skin::parseColor(text);
    if (style.stringValue(Style::HighlightColor, text))
        look().highlightTitle = Skin::parseColor(text);
    if (style.isDefined(Style::ImagePadding))
        look().imagePadding = style.padding(Style::ImagePadding);
    if (style.isDefined(Style::InnerSpacing))
        look().spacing = style.pointValue(Style::InnerSpacing).x();
    if (style.isDefined(Style::ContentPadding))
        mContentPadding = style.padding(Style::ContentPadding);
    if (style.isDefined(Style::Image))
        setIcon(DisplayImage::fromStyle(style, Style::Image));
    if (mTitle) {
        if (style.fontSize() <= 0) {
            QFont font = mTitle->font();
            font.setPixelSize(metricsFor(mType).fontSize);
            mTitle->setFont(font);
        }
        mTitle->applyTextStyle(style);
    }
    if (style.stringValue(Style::Label, text))
        setTitle(text);
    placeTitle();
    refreshLook();
}

// Look

void Button::refreshLook()
{
    const ControlStates now = state();
    const bool pressed = now & Pressed;
    const bool selected = now & Selected;
    const Palette palette = paletteFor(mType == DefaultBlue && mColor == DefaultColor ? int(Blue) : mColor);
    const Look* l = mLook.get();
    bool onAccent = mColor != DefaultColor || mType == DefaultBlue;

    DisplayImage background;
    if (l && !l->normal.isNull()) {
        background = l->normal;
        if (selected && !l->selected.isNull())
            background = l->selected;
        if (pressed && !l->highlighted.isNull())
            background = l->highlighted;
    } else {
        QColor fill;
        QColor stroke;
        int strokeWidth = 0;
        if (l && l->fill.isValid())
            fill = pressed ? l->fill.color().darker(120) : l->fill.color();
        else if (mType != Custom)
            fill = skin(pressed ? palette.pressed : palette.fill);
        if (selected && (!l || !l->fill.isValid())) {
            fill = skin(pressed ? "buttonBluePressedColor" : "buttonSelectedColor");
            onAccent = true;
        } else if (mType == SquareToggleFlat && !pressed) {
            fill = QColor();
            stroke = skin("buttonOutlineColor");
            strokeWidth = kFlatStrokeWidth;
            onAccent = false;
        }
        if (l && l->stroke.isValid()) {
            stroke = l->stroke.color();
            strokeWidth = l->strokeWidth >= 0 ? l->strokeWidth : kFlatStrokeWidth;
        }
        int radius = l && l->cornerRadius >= 0 ? l->cornerRadius : metricsFor(mType).radius;
        if (radius < 0 || mType == Round || mType == RoundToggle)
            radius = qMin(width(), height()) / 2;
        if (fill.isValid() || stroke.isValid())
            background = ControlShapes::roundedRect(radius, fill, stroke, strokeWidth);
    }
    if (background != mBackground) {
        mBackground = background;
        update();
    }

    SkinColor title = Skin::parseColor(QLatin1String(onAccent ? "onAccentColor" : palette.text));
    if (l && l->title.isValid() && !(onAccent && selected))
        title = l->title;
    if (pressed && l && l->highlightTitle.isValid())
        title = l->highlightTitle;
    if (!(title == mIconColor)) {
        mIconColor = title;
        if (!mIcon.isNull())
            update();
    }
    if (mTitle) {
        mTitle->setColor(title);
        mTitle->setAlpha(now & Disabled ? float(kDisabledOpacity) : 1.0f);
    }
}

void Button::stateChanged()
{
    ControlBase::stateChanged();
    refreshLook();
}

void Button::reskinned()
{
    ControlBase::reskinned();
    refreshLook();
}

// Geometry

QRect Button::contentRect() const
{
    const Padding& p = mContentPadding;
    return QRect(p.left, p.top, width() - p.left - p.right, height() - p.top - p.bottom);
}

QRect Button::iconRect() const
{
    if (mIcon.isNull())
        return QRect();
    const Padding pad = mLook ? mLook->imagePadding : Padding();
    const QRect area = contentRect().adjusted(pad.left, pad.top, -pad.right, -pad.bottom);
    QSize size = mIcon.size();
    if (size.width() > area.width() || size.height() > area.height())
        size.scale(area.size(), Qt::KeepAspectRatio);
    const int y = area.top() + (area.height() - size.height()) / 2;
    if (!title().isEmpty())
        return QRect(QPoint(area.left(), y), size);
    return QRect(QPoint(area.left() + (area.width() - size.width()) / 2, y), size);
}

void Button::placeTitle()
{
    if (!mTitle)
        return;
    QRect area = contentRect();
    if (!mIcon.isNull()) {
        const Padding pad = mLook ? mLook->imagePadding : Padding();
        const int spacing = mLook && mLook->spacing >= 0 ? mLook->spacing : kDefaultSpacing;
        area.setLeft(iconRect().right() + 1 + pad.right + spacing);
    }
    mTitle->moveTo(area.x(), area.y());
    mTitle->resizeTo(qMax(0, area.width()), qMax(0, area.height()));
}

int Button::typeHeight() const
{
    return metricsFor(mType).height;
}

// In a flex layout the button is one measured box: the flow offers it a size from
// its natural size, and the button places its title itself.
void Button::layoutImplChanged()
{
    ControlBase::layoutImplChanged();
    if (CssLayout* css = cssLayout())
        css->setOption(CssLayout::Measure, true);
}

void Button::resized()
{
    ControlBase::resized();
    placeTitle();
    refreshLook();
}

QSizeF Button::naturalSize(double)
{
    const Padding& p = mContentPadding;
    const QSizeF text = title().isEmpty() ? QSizeF() : mTitle->naturalSize(-1);
    qreal width = p.left + p.right + text.width();
    qreal height = p.top + p.bottom + text.height();
    if (!mIcon.isNull()) {
        const Padding pad = mLook ? mLook->imagePadding : Padding();
        const int spacing = mLook && mLook->spacing >= 0 ? mLook->spacing : kDefaultSpacing;
        width += mIcon.width() + pad.left + pad.right + (text.isEmpty() ? 0 : spacing);
        height = qMax(height, qreal(p.top + p.bottom + pad.top + pad.bottom + mIcon.height()));
    }
    height = qMax(height, qreal(typeHeight()));
    if (mType == Round || mType == RoundToggle)
        width = height = qMax(width, height);
    return QSizeF(width, height);
}

// Drawing and touch

void Button::draw(QPainter& painter)
{
    ControlBase::draw(painter);
    const qreal opacity = painter.opacity();
    if (state() & Disabled)
        painter.setOpacity(opacity * kDisabledOpacity);
    mBackground.draw(painter, QRect(0, 0, width(), height()));
    if (!mIcon.isNull()) {
        // A one-colour symbol takes the title's colour, so it reads on every fill and skin.
        DisplayImage icon = ControlShapes::tinted(mIcon, mIconColor.color());
        icon.setFill(DisplayImage::Stretch);
        icon.draw(painter, iconRect());
    }
    painter.setOpacity(opacity);
}

void Button::tapped(int touch, QPoint point)
{
    ControlBase::tapped(touch, point);
    if (isToggle())
        setSelected(!isSelected());
}

void Button::released(int touch)
{
    const bool inside = isPressed();
    ControlBase::released(touch);
    if (inside)
        emit clicked(this);
}

QVariantMap Button::toVariantMap()
{
    QVariantMap map = ControlBase::toVariantMap();
    map.insert(QStringLiteral("title"), title());
    map.insert(QStringLiteral("buttonType"), int(mType));
    map.insert(QStringLiteral("toggle"), isToggle());
    return map;
}
