// CssLayout: the node's style, with the checks that catch flex rules that cannot work.
#include "CssLayout.h"

#include "Logger.h"

#include <cmath>

static const char* const kLogSource = "gui/CssLayout";

namespace {
bool sameValue(float a, float b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

template <typename T> bool sameValue(T a, T b)
{
    return a == b;
}

// The Padding order of edge arrays, mapped onto the engine's edges.
constexpr css_position_t kEdgeOrder[6] = {CSS_TOP, CSS_RIGHT, CSS_BOTTOM, CSS_LEFT, CSS_START, CSS_END};
constexpr css_position_t kPositionOrder[4] = {CSS_TOP, CSS_RIGHT, CSS_BOTTOM, CSS_LEFT};
} // namespace

template <typename T> void CssLayout::setStyleValue(T& field, T value)
{
    if (sameValue(field, value))
        return;
    field = value;
    markDirty();
}

void CssLayout::setCssDirection(css_direction_t direction)
{
    if (direction == mNode->style.direction)
        return;
    mNode->style.direction = direction;
    markDirty();
    // The engine's cache does not tell one direction from another (not even this
    // node's own): every node that inherits the direction must be laid out again.
    invalidateInheritedDirection();
}

void CssLayout::setCssFlexDirection(css_flex_direction_t direction)
{
    setStyleValue(mNode->style.flex_direction, direction);
}

void CssLayout::setCssJustifyContent(css_justify_t justify)
{
    setStyleValue(mNode->style.justify_content, justify);
}

void CssLayout::setCssAlignContent(css_align_t align)
{
    setStyleValue(mNode->style.align_content, align);
}

void CssLayout::setCssAlignItems(css_align_t align)
{
    setStyleValue(mNode->style.align_items, align);
}

void CssLayout::setCssAlignSelf(css_align_t align)
{
    setStyleValue(mNode->style.align_self, align);
}

void CssLayout::setCssFlexWrap(css_wrap_type_t wrap)
{
    setStyleValue(mNode->style.flex_wrap, wrap);
}

void CssLayout::setCssPositionType(css_position_type_t type)
{
    const bool cssParent = parentLayout() != nullptr;
    if (type == CSS_POSITION_RELATIVE)
        assertView(cssParent, "parentView() && parentView()->usesCssLayout()",
                   "Relative position is only supported when the parent also uses CSS layout View: %1",
                   __LINE__);
    if (type == mNode->style.position_type)
        return;
    mNode->style.position_type = type;
    if (cssParent || isChild())
        updateIsChild();
    markDirty();
}

void CssLayout::setCssFlex(float flex)
{
    if (sameValue(flex, mNode->style.flex))
        return;
    if (flex > 0) {
        assertView(!isFixedSize(), "!isFixedSize()", "Cannot flex fixed size views View: %1", __LINE__);
        assertView(parentLayout() != nullptr, "parentView() && parentView()->usesCssLayout()",
                   "Cannot flex views that don't have a CSS layout parent View: %1", __LINE__);
        assertView(mNode->style.position_type != CSS_POSITION_ABSOLUTE,
                   "cssPositionType() != CSS_POSITION_ABSOLUTE",
                   "Cannot flex absolutely positioned views View: %1", __LINE__);
    }
    mNode->style.flex = flex;
    markDirty();
}

// Position

void CssLayout::setCssPosition(css_position_t edge, float value)
{
    if (!assertView(edge >= CSS_LEFT && edge <= CSS_BOTTOM, "edge <= CSS_BOTTOM",
                    "Positions are left, top, right and bottom only View: %1", __LINE__))
        return;
    if (sameValue(mNode->style.position[edge], value))
        return;
    mNode->style.position[edge] = value;
    // Right and bottom put an absolutely positioned view into its parent's flow.
    if (edge == CSS_RIGHT || edge == CSS_BOTTOM)
        updateIsChild();
    markDirty();
}

void CssLayout::setCssPosition(const float (&edges)[4])
{
    setCssPosition(edges[0], edges[1], edges[2], edges[3]);
}

void CssLayout::setCssPosition(float top, float right, float bottom, float left)
{
    const float values[4] = {top, right, bottom, left};
    bool changed = false;
    bool membership = false;
    for (int i = 0; i < 4; ++i) {
        float& field = mNode->style.position[kPositionOrder[i]];
        if (sameValue(field, values[i]))
            continue;
        field = values[i];
        changed = true;
        membership = membership || kPositionOrder[i] == CSS_RIGHT || kPositionOrder[i] == CSS_BOTTOM;
    }
    if (membership)
        updateIsChild();
    if (changed)
        markDirty();
}

void CssLayout::setCssTopLeft(const QPointF& topLeft)
{
    setCssPosition(CSS_LEFT, float(topLeft.x()));
    setCssPosition(CSS_TOP, float(topLeft.y()));
}

float CssLayout::cssPosition(css_position_t edge) const
{
    return edge >= CSS_LEFT && edge <= CSS_BOTTOM ? mNode->style.position[edge] : CSS_UNDEFINED;
}

QPointF CssLayout::cssTopLeft() const
{
    return QPointF(cssLeft(), cssTop());
}

// Sizes

void CssLayout::setDimension(float (&target)[2], css_dimension_t dimension, float value)
{
    if (dimension != CSS_WIDTH && dimension != CSS_HEIGHT)
        return;
    setStyleValue(target[dimension], value);
}

void CssLayout::setCssSize(css_dimension_t dimension, float value)
{
    setDimension(mNode->style.dimensions, dimension, value);
}

void CssLayout::setCssSize(const QSizeF& size)
{
    setCssWidth(float(size.width()));
    setCssHeight(float(size.height()));
}

QSizeF CssLayout::cssSize() const
{
    return QSizeF(cssWidth(), cssHeight());
}

void CssLayout::setCssMinSize(css_dimension_t dimension, float value)
{
    setDimension(mNode->style.minDimensions, dimension, value);
}

void CssLayout::setCssMinSize(const QSizeF& size)
{
    setCssMinWidth(float(size.width()));
    setCssMinHeight(float(size.height()));
}

QSizeF CssLayout::cssMinSize() const
{
    return QSizeF(mNode->style.minDimensions[CSS_WIDTH], mNode->style.minDimensions[CSS_HEIGHT]);
}

void CssLayout::setCssMaxSize(css_dimension_t dimension, float value)
{
    setDimension(mNode->style.maxDimensions, dimension, value);
}

void CssLayout::setCssMaxSize(const QSizeF& size)
{
    setCssMaxWidth(float(size.width()));
    setCssMaxHeight(float(size.height()));
}

QSizeF CssLayout::cssMaxSize() const
{
    return QSizeF(mNode->style.maxDimensions[CSS_WIDTH], mNode->style.maxDimensions[CSS_HEIGHT]);
}

bool CssLayout::isFixedWidth() const
{
    // The engine takes a negative size for none.
    return !std::isnan(cssWidth()) && cssWidth() >= 0;
}

bool CssLayout::isFixedHeight() const
{
    return !std::isnan(cssHeight()) && cssHeight() >= 0;
}

// Edges

void CssLayout::setEdge(float (&target)[6], css_position_t edge, float value, void (CssLayout::*changed)())
{
    if (!assertView(edge >= CSS_LEFT && edge < CSS_POSITION_COUNT, "edge < CSS_POSITION_COUNT",
                    "Edges are left, top, right, bottom, start and end View: %1", __LINE__))
        return;
    if (sameValue(target[edge], value))
        return;
    target[edge] = value;
    (this->*changed)();
    markDirty();
}

void CssLayout::setEdges(float (&target)[6], const float (&values)[6], void (CssLayout::*changed)())
{
    bool differs = false;
    for (int i = 0; i < 6; ++i) {
        float& field = target[kEdgeOrder[i]];
        differs = differs || !sameValue(field, values[i]);
        field = values[i];
    }
    if (!differs)
        return;
    (this->*changed)();
    markDirty();
}

void CssLayout::setCssMargin(css_position_t edge, float value)
{
    setEdge(mNode->style.margin, edge, value, &CssLayout::marginChanged);
}

void CssLayout::setCssMargin(const float (&edges)[6])
{
    setEdges(mNode->style.margin, edges, &CssLayout::marginChanged);
}

void CssLayout::setCssMargin(const Padding& margin)
{
    setCssMargin(margin.top, margin.right, margin.bottom, margin.left, CSS_UNDEFINED, CSS_UNDEFINED);
}

void CssLayout::setCssMargin(float top, float right, float bottom, float left, float start, float end)
{
    const float edges[6] = {top, right, bottom, left, start, end};
    setCssMargin(edges);
}

void CssLayout::setCssPadding(css_position_t edge, float value)
{
    setEdge(mNode->style.padding, edge, value, &CssLayout::paddingChanged);
}

void CssLayout::setCssPadding(const float (&edges)[6])
{
    setEdges(mNode->style.padding, edges, &CssLayout::paddingChanged);
}

void CssLayout::setCssPadding(const Padding& padding)
{
    setCssPadding(padding.top, padding.right, padding.bottom, padding.left, CSS_UNDEFINED, CSS_UNDEFINED);
}

void CssLayout::setCssPadding(float top, float right, float bottom, float left, float start, float end)
{
    const float edges[6] = {top, right, bottom, left, start, end};
    setCssPadding(edges);
}

void CssLayout::setCssBorder(css_position_t edge, float value)
{
    setEdge(mNode->style.border, edge, value, &CssLayout::borderChanged);
}

void CssLayout::setCssBorder(const float (&edges)[6])
{
    setEdges(mNode->style.border, edges, &CssLayout::borderChanged);
}

void CssLayout::setCssBorder(const Padding& border)
{
    setCssBorder(border.top, border.right, border.bottom, border.left, CSS_UNDEFINED, CSS_UNDEFINED);
}

void CssLayout::setCssBorder(float top, float right, float bottom, float left, float start, float end)
{
    const float edges[6] = {top, right, bottom, left, start, end};
    setCssBorder(edges);
}

void CssLayout::marginChanged()
{
    assertView(isChild(), "isChild()", "Setting margin on a view which doesn't have a CSS parent. View: %1",
               __LINE__);
}

void CssLayout::paddingChanged() {}

void CssLayout::borderChanged()
{
    // Borders take room in the flow but are not drawn.
    assertView(false, "false", "CSS border not implemented View: %1", __LINE__);
}

// Options

void CssLayout::setOption(OptionFlag option, bool on)
{
    const quint32 options = on ? (mOptions | option) : (mOptions & ~quint32(option));
    if (options == mOptions)
        return;
    mOptions = options;
    if (option == Measure)
        updateMeasure();
    markDirty();
}

void CssLayout::updateMeasure()
{
    mNode->measure = hasOption(Measure) ? &CssLayout::measureView : nullptr;
}
