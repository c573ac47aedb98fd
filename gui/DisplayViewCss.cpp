// DisplayView: the flex binding and its css properties.
#include "CssLayout.h"
#include "DisplayView.h"
#include "Style.h"

namespace {
// Flex edges from a style's real list: one number for all four sides, two for
// vertical and horizontal (like the integer paddings), four for top, right, bottom
// and left, six adding start and end. Other counts are reported by setStyle.
template <typename SetPadding, typename SetEdges>
void applyEdgeList(const QList<double>& values, SetPadding setPadding, SetEdges setEdges)
{
    switch (values.size()) {
    case 1:
        setPadding(Padding(int(values[0])));
        break;
    case 2:
        setPadding(Padding(int(values[0]), int(values[1])));
        break;
    case 4:
    case 6: {
        float edges[6] = {CSS_UNDEFINED, CSS_UNDEFINED, CSS_UNDEFINED,
                          CSS_UNDEFINED, CSS_UNDEFINED, CSS_UNDEFINED};
        for (int i = 0; i < values.size(); ++i)
            edges[i] = float(values[i]);
        setEdges(edges);
        break;
    }
    default:
        break;
    }
}
} // namespace

void DisplayView::enableCssLayout()
{
    if (cssLayout())
        return;
    setLayoutImpl(new CssLayout(this));
    // Every child of a flex container takes part in its flow.
    const DisplayViewList::List children = mPlacesOwnChildren ? DisplayViewList::List() : mChildren.list();
    for (DisplayView* child : children) {
        if (child->cssLayout())
            cssLayout()->childLayoutAdded(child->cssLayout());
        else
            child->enableCssLayout();
    }
    if (!mStyle.isNull())
        applyCssStyle(mStyle);
}

void DisplayView::setPlacesOwnChildren(bool places)
{
    mPlacesOwnChildren = places;
}

void DisplayView::disableCssLayout()
{
    if (cssLayout())
        setLayoutImpl(nullptr);
}

void DisplayView::applyCssStyle(const Style& style)
{
    CssLayout* css = cssLayout();
    int number = 0;
    double real = 0;
    // Enumerations first: membership and the flex checks depend on the position type.
    if (style.enumValue(Style::Direction, number))
        css->setCssDirection(css_direction_t(number));
    if (style.enumValue(Style::FlexDirection, number))
        css->setCssFlexDirection(css_flex_direction_t(number));
    if (style.enumValue(Style::JustifyContent, number))
        css->setCssJustifyContent(css_justify_t(number));
    if (style.enumValue(Style::AlignContent, number))
        css->setCssAlignContent(css_align_t(number));
    if (style.enumValue(Style::AlignItems, number))
        css->setCssAlignItems(css_align_t(number));
    if (style.enumValue(Style::AlignSelf, number))
        css->setCssAlignSelf(css_align_t(number));
    if (style.enumValue(Style::FlexWrap, number))
        css->setCssFlexWrap(css_wrap_type_t(number));
    if (style.enumValue(Style::PositionType, number))
        css->setCssPositionType(css_position_type_t(number));

    const struct
    {
        Style::StyleAttribute attribute;
        void (CssLayout::*set)(float);
    } reals[] = {
        {Style::Width, &CssLayout::setCssWidth},       {Style::Height, &CssLayout::setCssHeight},
        {Style::MinWidth, &CssLayout::setCssMinWidth}, {Style::MinHeight, &CssLayout::setCssMinHeight},
        {Style::MaxWidth, &CssLayout::setCssMaxWidth}, {Style::MaxHeight, &CssLayout::setCssMaxHeight}};
    for (const auto& entry : reals) {
        if (style.doubleValue(entry.attribute, real))
            (css->*entry.set)(float(real));
    }
    const struct
    {
        Style::StyleAttribute attribute;
        css_position_t edge;
    } positions[] = {
        {Style::X, CSS_LEFT}, {Style::Y, CSS_TOP}, {Style::Right, CSS_RIGHT}, {Style::Bottom, CSS_BOTTOM}};
    for (const auto& entry : positions) {
        if (style.doubleValue(entry.attribute, real))
            css->setCssPosition(entry.edge, float(real));
    }

    if (style.isDefined(Style::Padding))
        applyEdgeList(
            style.doubleListValue(Style::Padding), [css](const Padding& p) { css->setCssPadding(p); },
            [css](const float(&edges)[6]) { css->setCssPadding(edges); });
    if (style.isDefined(Style::Margin))
        applyEdgeList(
            style.doubleListValue(Style::Margin), [css](const Padding& m) { css->setCssMargin(m); },
            [css](const float(&edges)[6]) { css->setCssMargin(edges); });
    // Last, so that it is checked against the size and position type just set.
    if (style.doubleValue(Style::Flex, real))
        css->setCssFlex(float(real));
}

const CssLayout& DisplayView::cssValues() const
{
    return cssLayout() ? *cssLayout() : CssLayout::unbound();
}

// Setters enable the binding; getters of a view without one give the engine's defaults.

void DisplayView::setCssDirection(css_direction_t direction)
{
    enableCssLayout();
    cssLayout()->setCssDirection(direction);
}

css_direction_t DisplayView::cssDirection() const
{
    return cssValues().cssDirection();
}

void DisplayView::setCssFlexDirection(css_flex_direction_t direction)
{
    enableCssLayout();
    cssLayout()->setCssFlexDirection(direction);
}

css_flex_direction_t DisplayView::cssFlexDirection() const
{
    return cssValues().cssFlexDirection();
}

void DisplayView::setCssJustifyContent(css_justify_t justify)
{
    enableCssLayout();
    cssLayout()->setCssJustifyContent(justify);
}

css_justify_t DisplayView::cssJustifyContent() const
{
    return cssValues().cssJustifyContent();
}

void DisplayView::setCssAlignContent(css_align_t align)
{
    enableCssLayout();
    cssLayout()->setCssAlignContent(align);
}

css_align_t DisplayView::cssAlignContent() const
{
    return cssValues().cssAlignContent();
}

void DisplayView::setCssAlignItems(css_align_t align)
{
    enableCssLayout();
    cssLayout()->setCssAlignItems(align);
}

css_align_t DisplayView::cssAlignItems() const
{
    return cssValues().cssAlignItems();
}

void DisplayView::setCssAlignSelf(css_align_t align)
{
    enableCssLayout();
    cssLayout()->setCssAlignSelf(align);
}

css_align_t DisplayView::cssAlignSelf() const
{
    return cssValues().cssAlignSelf();
}

void DisplayView::setCssFlexWrap(css_wrap_type_t wrap)
{
    enableCssLayout();
    cssLayout()->setCssFlexWrap(wrap);
}

css_wrap_type_t DisplayView::cssFlexWrap() const
{
    return cssValues().cssFlexWrap();
}

void DisplayView::setCssPositionType(css_position_type_t type)
{
    enableCssLayout();
    cssLayout()->setCssPositionType(type);
}

css_position_type_t DisplayView::cssPositionType() const
{
    return cssValues().cssPositionType();
}

void DisplayView::setCssFlex(float flex)
{
    enableCssLayout();
    cssLayout()->setCssFlex(flex);
}

float DisplayView::cssFlex() const
{
    return cssValues().cssFlex();
}

void DisplayView::setCssPosition(css_position_t edge, float value)
{
    enableCssLayout();
    cssLayout()->setCssPosition(edge, value);
}

void DisplayView::setCssPosition(const float (&edges)[4])
{
    enableCssLayout();
    cssLayout()->setCssPosition(edges);
}

void DisplayView::setCssPosition(float top, float right, float bottom, float left)
{
    enableCssLayout();
    cssLayout()->setCssPosition(top, right, bottom, left);
}

void DisplayView::setCssTopLeft(const QPointF& topLeft)
{
    enableCssLayout();
    cssLayout()->setCssTopLeft(topLeft);
}

float DisplayView::cssPosition(css_position_t edge) const
{
    return cssValues().cssPosition(edge);
}

QPointF DisplayView::cssTopLeft() const
{
    return cssValues().cssTopLeft();
}

float DisplayView::cssTop() const
{
    return cssValues().cssTop();
}

float DisplayView::cssLeft() const
{
    return cssValues().cssLeft();
}

float DisplayView::cssRight() const
{
    return cssValues().cssRight();
}

float DisplayView::cssBottom() const
{
    return cssValues().cssBottom();
}

void DisplayView::setCssSize(css_dimension_t dimension, float value)
{
    enableCssLayout();
    cssLayout()->setCssSize(dimension, value);
}

void DisplayView::setCssSize(const QSizeF& size)
{
    enableCssLayout();
    cssLayout()->setCssSize(size);
}

void DisplayView::setCssWidth(float width)
{
    enableCssLayout();
    cssLayout()->setCssWidth(width);
}

void DisplayView::setCssHeight(float height)
{
    enableCssLayout();
    cssLayout()->setCssHeight(height);
}

QSizeF DisplayView::cssSize() const
{
    return cssValues().cssSize();
}

float DisplayView::cssWidth() const
{
    return cssValues().cssWidth();
}

float DisplayView::cssHeight() const
{
    return cssValues().cssHeight();
}

void DisplayView::setCssMinSize(css_dimension_t dimension, float value)
{
    enableCssLayout();
    cssLayout()->setCssMinSize(dimension, value);
}

void DisplayView::setCssMinSize(const QSizeF& size)
{
    enableCssLayout();
    cssLayout()->setCssMinSize(size);
}

void DisplayView::setCssMinWidth(float width)
{
    enableCssLayout();
    cssLayout()->setCssMinWidth(width);
}

void DisplayView::setCssMinHeight(float height)
{
    enableCssLayout();
    cssLayout()->setCssMinHeight(height);
}

QSizeF DisplayView::cssMinSize() const
{
    return cssValues().cssMinSize();
}

void DisplayView::setCssMaxSize(css_dimension_t dimension, float value)
{
    enableCssLayout();
    cssLayout()->setCssMaxSize(dimension, value);
}

void DisplayView::setCssMaxSize(const QSizeF& size)
{
    enableCssLayout();
    cssLayout()->setCssMaxSize(size);
}

void DisplayView::setCssMaxWidth(float width)
{
    enableCssLayout();
    cssLayout()->setCssMaxWidth(width);
}

void DisplayView::setCssMaxHeight(float height)
{
    enableCssLayout();
    cssLayout()->setCssMaxHeight(height);
}

QSizeF DisplayView::cssMaxSize() const
{
    return cssValues().cssMaxSize();
}

void DisplayView::setCssMargin(css_position_t edge, float value)
{
    enableCssLayout();
    cssLayout()->setCssMargin(edge, value);
}

void DisplayView::setCssMargin(const float (&edges)[6])
{
    enableCssLayout();
    cssLayout()->setCssMargin(edges);
}

void DisplayView::setCssMargin(const Padding& margin)
{
    enableCssLayout();
    cssLayout()->setCssMargin(margin);
}

void DisplayView::setCssMargin(float top, float right, float bottom, float left, float start, float end)
{
    enableCssLayout();
    cssLayout()->setCssMargin(top, right, bottom, left, start, end);
}

float DisplayView::cssMargin(css_position_t edge) const
{
    return cssValues().cssMargin(edge);
}

void DisplayView::setCssPadding(css_position_t edge, float value)
{
    enableCssLayout();
    cssLayout()->setCssPadding(edge, value);
}

void DisplayView::setCssPadding(const float (&edges)[6])
{
    enableCssLayout();
    cssLayout()->setCssPadding(edges);
}

void DisplayView::setCssPadding(const Padding& padding)
{
    enableCssLayout();
    cssLayout()->setCssPadding(padding);
}

void DisplayView::setCssPadding(float top, float right, float bottom, float left, float start, float end)
{
    enableCssLayout();
    cssLayout()->setCssPadding(top, right, bottom, left, start, end);
}

float DisplayView::cssPadding(css_position_t edge) const
{
    return cssValues().cssPadding(edge);
}

void DisplayView::setCssBorder(css_position_t edge, float value)
{
    enableCssLayout();
    cssLayout()->setCssBorder(edge, value);
}

void DisplayView::setCssBorder(const float (&edges)[6])
{
    enableCssLayout();
    cssLayout()->setCssBorder(edges);
}

void DisplayView::setCssBorder(const Padding& border)
{
    enableCssLayout();
    cssLayout()->setCssBorder(border);
}

void DisplayView::setCssBorder(float top, float right, float bottom, float left, float start, float end)
{
    enableCssLayout();
    cssLayout()->setCssBorder(top, right, bottom, left, start, end);
}

float DisplayView::cssBorder(css_position_t edge) const
{
    return cssValues().cssBorder(edge);
}
