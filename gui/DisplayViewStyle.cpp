// DisplayView: taking properties from a style.
#include "DisplayView.h"
#include "DisplayViewExtras.h"
#include "Logger.h"
#include "Skin.h"
#include "Style.h"

static const char* const kLogSource = "../../../gui/DisplayView";

namespace {
// Flex paddings and margins: all sides, vertical and horizontal, the four physical
// edges, or all six edges.
bool isValidEdgeCount(int count)
{
    return count == 1 || count == 2 || count == 4 || count == 6;
}

bool hasFlexAttributes(const Style& style)
{
    for (int attribute = Style::Direction; attribute <= Style::MaxHeight; ++attribute) {
        if (style.isDefined(Style::StyleAttribute(attribute)))
            return true;
    }
    return false;
}
} // namespace

const Style& DisplayView::style() const
{
    return mStyle;
}

void DisplayView::setStyle(const Style& style)
{
    if (style != mStyle) {
        mStyle.unregisterListener(this);
        mStyle = style;
        mStyle.registerListener(this);
    }
    if (style.isNull())
        return;

    // Flex attributes make a flex view; enabling the binding takes the whole style.
    if (cssLayout())
        applyCssStyle(style);
    else if (hasFlexAttributes(style))
        enableCssLayout();

    int number = 0;
    double real = 0;
    bool flag = false;
    QString text;
    if (!layoutImpl()) {
        // Laid-out views take their geometry from the layout pass instead.
        if (style.intValue(Style::Width, number))
            setWidth(number);
        if (style.intValue(Style::Height, number))
            setHeight(number);
        if (style.intValue(Style::X, number))
            moveLeft(number);
        if (style.intValue(Style::Y, number))
            moveTop(number);
        if (mParentView && style.intValue(Style::Right, number))
            moveRight(mParentView->width() - number);
        if (mParentView && style.intValue(Style::Bottom, number))
            moveBottom(mParentView->height() - number);
    }
    if (style.doubleValue(Style::Alpha, real))
        setAlpha(float(real));
    if (style.stringValue(Style::BackgroundColor, text))
        setBackgroundColor(Skin::parseColor(text), ext().mBackgroundOpacity);
    if (style.isDefined(Style::BackgroundImage)) {
        const DisplayImage image = DisplayImage::fromStyle(style, Style::BackgroundImage);
        setBackground(image, true);
        if (!image.isNull() && !usesCssLayout() && style.boolValue(Style::FitToImage, flag) && flag)
            resizeTo(image.width(), image.height());
    }
    if (style.isDefined(Style::TouchPadding))
        setTouchPadding(style.padding(Style::TouchPadding));
    if (style.isDefined(Style::ShadowPadding))
        setShadowPadding(style.padding(Style::ShadowPadding));
    if (style.isDefined(Style::LayoutMargin))
        setLayoutMargin(style.padding(Style::LayoutMargin));
    if (style.boolValue(Style::TouchEnabled, flag))
        setTouchBehavior(IgnoreTouches, !flag);

    // The flex edges themselves went to the flex binding above.
    if (style.isDefined(Style::Padding)) {
        const int count = style.doubleListValue(Style::Padding).size();
        if (!isValidEdgeCount(count))
            ORBIS_FAIL(QStringLiteral("Invalid padding count: %1").arg(count));
    }
    if (style.isDefined(Style::Margin)) {
        const int count = style.doubleListValue(Style::Margin).size();
        if (!isValidEdgeCount(count))
            ORBIS_FAIL(QStringLiteral("Invalid margin count: %1").arg(count));
    }
    layoutPropertyChanged(StyleProperty);

    if (style.boolValue(Style::ApplyToChildren, flag) && flag) {
        const DisplayViewList::List children = mChildren.list();
        for (DisplayView* child : children)
            child->setStyle(style);
    }
}

void DisplayView::restyled()
{
    // The style's text or a named style it uses changed: take everything again.
    const Style current = mStyle;
    setStyle(current);
}
