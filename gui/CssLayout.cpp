// CssLayout: membership, the pass and the engine's callbacks.
#include "CssLayout.h"

#include "ConfigValue.h"
#include "Logger.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

static const char* const kLogSource = "gui/CssLayout";

static ConfigBoolValue gDebugCssLayout("ui/debug_css_layout", false);

namespace {
// What the engine gets for a child that cannot be handed out, so that a broken tree
// is reported instead of dereferenced.
css_node_t* detachedNode()
{
    static css_node_t* node = [] {
        css_node_t* created = new_css_node();
        created->get_child = [](void*, int) -> css_node_t* {
            return detachedNode();
        };
        created->is_dirty = [](void*) {
            return true;
        };
        return created;
    }();
    return node;
}

// Padding and border as the engine counts them: negative and unset edges are none,
// and start and end win over left and right.
float inset(float value)
{
    return std::isnan(value) || value < 0 ? 0.0f : value;
}

float horizontalInsets(const css_style_t& style)
{
    const auto edge = [](const float(&edges)[6], css_position_t physical, css_position_t logical) {
        return std::isnan(edges[logical]) ? inset(edges[physical]) : inset(edges[logical]);
    };
    return edge(style.padding, CSS_LEFT, CSS_START) + edge(style.padding, CSS_RIGHT, CSS_END) +
           edge(style.border, CSS_LEFT, CSS_START) + edge(style.border, CSS_RIGHT, CSS_END);
}

float verticalInsets(const css_style_t& style)
{
    return inset(style.padding[CSS_TOP]) + inset(style.padding[CSS_BOTTOM]) + inset(style.border[CSS_TOP]) +
           inset(style.border[CSS_BOTTOM]);
}

// The engine adds offsets to the position it finds and takes a defined size for one its
// parent gave: every layout of a node must start from an empty result.
void clearResult(css_layout_t& layout)
{
    layout.dimensions[CSS_WIDTH] = CSS_UNDEFINED;
    layout.dimensions[CSS_HEIGHT] = CSS_UNDEFINED;
    std::fill(std::begin(layout.position), std::end(layout.position), 0.0f);
}
} // namespace

CssLayout::CssLayout(DisplayView* view) : mView(view), mNode(new_css_node())
{
    mNode->context = this;
    mNode->get_child = &CssLayout::getChild;
    mNode->is_dirty = &CssLayout::isDirty;
    mNode->print = &CssLayout::print;
    // Flex views are laid out in the frame's deferred pass.
    view->setEnableDeferredLayout(true);
    if (CssLayout* parent = parentLayout())
        parent->childLayoutAdded(this);
}

CssLayout::CssLayout(Unbound) : mView(nullptr), mNode(new_css_node()) {}

CssLayout::~CssLayout()
{
    if (mView && !mView->isDestroying()) {
        if (CssLayout* parent = parentLayout())
            parent->childLayoutRemoved(this);
        // The flow ends here: the children place themselves from now on.
        for (DisplayView* child : mView->children().list()) {
            if (CssLayout* layout = layoutOf(child))
                layout->clearIsChild();
        }
    }
    free_css_node(mNode);
}

const CssLayout& CssLayout::unbound()
{
    static const CssLayout defaults{Unbound{}};
    return defaults;
}

CssLayout* CssLayout::layoutOf(DisplayView* view)
{
    return view ? view->cssLayout() : nullptr;
}

CssLayout* CssLayout::parentLayout() const
{
    return mView ? layoutOf(mView->mParentView) : nullptr;
}

bool CssLayout::assertView(bool condition, const char* expression, const char* message, int line) const
{
    if (condition)
        return true;
    return Logger::logAssert(expression,
                             QString::fromLatin1(message).arg(mView ? mView->viewPath() : QString()),
                             kLogSource, line);
}

// LayoutImpl

QSizeF CssLayout::size()
{
    return cssSize();
}

QPointF CssLayout::topLeft()
{
    return cssTopLeft();
}

void CssLayout::forgetCommitted()
{
    std::fill(std::begin(mCommitted), std::end(mCommitted), CSS_UNDEFINED);
}

void CssLayout::setSize(const QSizeF& size)
{
    forgetCommitted();
    // A NaN component leaves that dimension to the flow.
    if (!std::isnan(size.width()))
        setCssWidth(float(size.width()));
    if (!std::isnan(size.height()))
        setCssHeight(float(size.height()));
}

void CssLayout::setTopLeft(const QPointF& topLeft)
{
    forgetCommitted();
    // Members are placed by their parent's flow; a view that places itself keeps the
    // place it was given.
    if (!isChild())
        setCssTopLeft(topLeft);
}

void CssLayout::layoutPropertyChanged(DisplayView::LayoutProperty property)
{
    switch (property) {
    case DisplayView::VisibilityProperty:
        // Only a flow has members to gain or lose.
        if (parentLayout() || isChild())
            updateIsChild();
        break;
    case DisplayView::FixedSizeProperty:
        if (mView->fixedSize())
            setCssSize(QSizeF(mView->size()));
        else
            setCssSize(QSizeF(qQNaN(), qQNaN()));
        break;
    case DisplayView::MarginProperty:
        setCssMargin(mView->layoutMargin());
        break;
    default:
        break;
    }
}

void CssLayout::childLayoutPropertyChanged(DisplayView*, DisplayView::LayoutProperty)
{
    // A child reports its own changes through its binding; what concerns the flow
    // reaches this node as a dirty child or a change of membership.
}

void CssLayout::childLayoutDirty(DisplayView* child)
{
    CssLayout* layout = layoutOf(child);
    if (!layout || !layout->isChild() || mView->isDestroying())
        return;
    layoutMarkedDirty();
    mView->markLayoutDirty();
}

bool CssLayout::isFixedSize()
{
    return isFixedWidth() && isFixedHeight();
}

void CssLayout::childAdded(DisplayView* child)
{
    if (mView->placesOwnChildren())
        return;
    if (CssLayout* layout = layoutOf(child))
        childLayoutAdded(layout);
    else
        child->enableCssLayout(); // registers itself
}

void CssLayout::childRemoved(DisplayView* child)
{
    if (CssLayout* layout = layoutOf(child))
        childLayoutRemoved(layout);
}

void CssLayout::childOrderChanged(DisplayView* child)
{
    invalidateChildrenCache();
    CssLayout* layout = layoutOf(child);
    if (layout && layout->isChild())
        markDirty();
}

void CssLayout::childrenCleared()
{
    invalidateChildrenCache();
}

DisplayView* CssLayout::viewToStartLayout()
{
    CssLayout* layout = this;
    while (layout->isChild() && layout->mFlow)
        layout = layout->mFlow;
    return layout->mView;
}

void CssLayout::layoutMarkedDirty()
{
    css_layout_t& layout = mNode->layout;
    // The values init_css_node starts with: no cached result can match them.
    layout.last_requested_dimensions[CSS_WIDTH] = -1;
    layout.last_requested_dimensions[CSS_HEIGHT] = -1;
    layout.last_parent_max_width = -1;
    layout.last_direction = css_direction_t(-1);
    mState |= NodeDirty;
    if (layout.should_update) {
        // A result that was never committed must not pass for a size given by the parent.
        clearResult(layout);
        layout.should_update = false;
    }
}

DisplayView::LayoutImpl* CssLayout::cloneForPlaceholder(DisplayView* placeholder)
{
    CssLayout* clone = new CssLayout(placeholder);
    clone->mNode->style = mNode->style;
    // A measured view's placeholder measures as its own size, which is the view's.
    clone->mOptions = mOptions;
    clone->updateMeasure();
    clone->updateIsChild();
    clone->markDirty();
    return clone;
}

bool CssLayout::supportsLayoutAnimations()
{
    return true;
}

// Membership

void CssLayout::childLayoutAdded(CssLayout* child)
{
    invalidateChildrenCache();
    child->updateIsChild();
    if (child->isChild())
        markDirty();
}

void CssLayout::childLayoutRemoved(CssLayout* child)
{
    invalidateChildrenCache();
    std::replace(mCachedLayouts.begin(), mCachedLayouts.end(), child, static_cast<CssLayout*>(nullptr));
    const bool relativeMember = child->isChild() && child->cssPositionType() == CSS_POSITION_RELATIVE;
    child->clearIsChild();
    if (relativeMember)
        markDirty();
}

bool CssLayout::determineIsChild()
{
    const css_style_t& style = mNode->style;
    if (style.position_type == CSS_POSITION_ABSOLUTE && std::isnan(style.position[CSS_BOTTOM]) &&
        std::isnan(style.position[CSS_RIGHT]))
        return false; // places itself
    if (mView->mParentView && mView->mParentView->placesOwnChildren())
        return false; // placed by its parent
    if (!assertView(parentLayout() != nullptr, "parentView() && parentView()->usesCssLayout()",
                    "Using relative positioning or bottom/right on a view which doesn't have a CSS parent "
                    "View: %1",
                    __LINE__))
        return false;
    return isVisibleForLayout();
}

void CssLayout::updateIsChild()
{
    // A view outside any tree is nobody's child, and that is no misuse.
    const bool member = mView->mParentView && determineIsChild();
    if (member == isChild())
        return;
    if (CssLayout* parent = parentLayout()) {
        parent->invalidateChildrenCache();
        parent->markDirty();
    }
    if (member) {
        setIsChild();
        // Results from a former place or direction must not be taken from the cache.
        markDirty();
        invalidateInheritedDirection();
    } else {
        clearIsChild();
    }
}

void CssLayout::setIsChild()
{
    mState |= IsChild;
    mFlow = parentLayout();
}

void CssLayout::clearIsChild()
{
    mState &= ~IsChild;
    mFlow = nullptr;
}

void CssLayout::invalidateChildrenCache()
{
    mState |= ChildrenCacheInvalid;
}

void CssLayout::updateCachedChildren()
{
    if (!(mState & ChildrenCacheInvalid))
        return;
    mCachedChildren.clear();
    mCachedLayouts.clear();
    const DisplayViewList::List& children = mView->children().list();
    mCachedChildren.reserve(size_t(children.size()));
    mCachedLayouts.reserve(size_t(children.size()));
    for (DisplayView* child : children) {
        CssLayout* layout = layoutOf(child);
        if (layout && layout->isChild()) {
            mCachedChildren.push_back(child);
            mCachedLayouts.push_back(layout);
        }
    }
    mNode->children_count = int(mCachedChildren.size());
    mState &= ~ChildrenCacheInvalid;
}

const std::vector<DisplayView*>& CssLayout::cachedChildren()
{
    updateCachedChildren();
    return mCachedChildren;
}

bool CssLayout::isVisibleForLayout() const
{
    return mView->visibleFlag();
}

bool CssLayout::hasCssChildren()
{
    return !cachedChildren().empty();
}

// The pass

void CssLayout::markDirty()
{
    layoutMarkedDirty();
    if (mView->isDestroying() || !mView->checkForRecursiveLayout(DisplayView::StyleProperty))
        return;
    mView->markLayoutDirty();
    mView->queueForLayout();
}

void CssLayout::invalidateInheritedDirection()
{
    for (DisplayView* child : mView->children().list()) {
        CssLayout* layout = layoutOf(child);
        if (!layout || !layout->isChild() || layout->cssDirection() != CSS_DIRECTION_INHERIT)
            continue;
        layout->layoutMarkedDirty();
        child->markLayoutDirty();
        layout->invalidateInheritedDirection();
    }
}

void CssLayout::discardUncommitted()
{
    layoutMarkedDirty();
    for (DisplayView* child : mView->children().list()) {
        CssLayout* layout = layoutOf(child);
        if (layout && layout->mNode->layout.should_update)
            layout->discardUncommitted();
    }
}

bool CssLayout::parentComputedLayout() const
{
    return isChild() && mFlow && mFlow->mCommitting;
}

void CssLayout::layout()
{
    // A view at the top of its flow is computed even without children, so that a
    // lone flex view takes its sizes, limits and measured size like any other.
    if (!parentComputedLayout() && (hasCssChildren() || !isChild()))
        computeLayout();
    const bool fresh = mNode->layout.should_update;
    commitLayout();
    // Below a node that kept its cached result nothing was laid out again.
    const bool descended = mState & Descended;
    mState &= ~Descended;
    if (!fresh || !descended)
        return;
    mCommitting = true;
    for (size_t i = 0; i < mCachedChildren.size(); ++i) {
        if (mState & ChildrenCacheInvalid) {
            // A child's callback changed the children: forget what was computed for
            // them and lay the flow out again in the frame's next round.
            discardUncommitted();
            mView->markLayoutDirty();
            mView->queueForLayout();
            break;
        }
        CssLayout* layout = mCachedLayouts[i];
        if (!layout->mNode->layout.should_update)
            continue;
        if (layout->hasCssChildren()) {
            layout->mView->visitForLayout();
        } else {
            // Committed here rather than visited: the leaf is done with this pass.
            layout->mView->mLayoutDirty = false;
            layout->layout();
        }
    }
    mCommitting = false;
}

void CssLayout::computeLayout()
{
    updateCachedChildren();
    css_layout_t& layout = mNode->layout;
    float available = mNode->style.dimensions[CSS_WIDTH];
    css_direction_t parentDirection = CSS_DIRECTION_INHERIT;
    bool withinParent = false;
    QRectF placed;
    if (isChild()) {
        CssLayout* parent = parentLayout();
        withinParent = assertView(parent != nullptr, "parentView()->usesCssLayout()",
                                  "Parent does not use CSS layout as expected View: %1", __LINE__);
        if (withinParent) {
            // Laid out on its own inside its parent's flow: the parent keeps its place
            // and size, and lends its width and direction.
            placed = mView->layoutResultRect();
            layout.dimensions[CSS_WIDTH] = float(placed.width());
            layout.dimensions[CSS_HEIGHT] = float(placed.height());
            available =
                float(parent->mView->layoutResultRect().width()) - horizontalInsets(parent->mNode->style);
            parentDirection = parent->mNode->layout.direction;
        }
    }
    layoutNode(mNode, available, parentDirection);
    if (withinParent) {
        layout.position[CSS_LEFT] = float(placed.x());
        layout.position[CSS_TOP] = float(placed.y());
    }
    if (gDebugCssLayout.value()) {
        print_css_node(mNode, css_print_options_t(CSS_PRINT_LAYOUT | CSS_PRINT_STYLE | CSS_PRINT_CHILDREN));
        std::fflush(stdout);
    }
}

void CssLayout::commitLayout()
{
    css_layout_t& layout = mNode->layout;
    if (!layout.should_update)
        return;
    layout.should_update = false;
    const auto defined = [](float value, const char* expression, const char* message, int line) {
        if (!std::isnan(value))
            return double(value);
        Logger::logAssert(expression, QString::fromLatin1(message), kLogSource, line);
        return 0.0;
    };
    const double left = defined(layout.position[CSS_LEFT], "!isUndefined(layout.position[CSS_LEFT])",
                                "Left defined", __LINE__);
    const double top =
        defined(layout.position[CSS_TOP], "!isUndefined(layout.position[CSS_TOP])", "Top defined", __LINE__);
    const double width = defined(layout.dimensions[CSS_WIDTH], "!isUndefined(layout.dimensions[CSS_WIDTH])",
                                 "Width defined", __LINE__);
    const double height = defined(layout.dimensions[CSS_HEIGHT],
                                  "!isUndefined(layout.dimensions[CSS_HEIGHT])", "Height defined", __LINE__);
    clearResult(layout);
    const float result[4] = {float(left), float(top), float(width), float(height)};
    if (std::equal(std::begin(result), std::end(result), std::begin(mCommitted)))
        return;
    std::copy(std::begin(result), std::end(result), std::begin(mCommitted));
    mView->setLayoutResultRect(QRectF(left, top, width, height));
}

// Engine callbacks

css_node_t* CssLayout::getChild(void* context, int index)
{
    CssLayout* self = static_cast<CssLayout*>(context);
    if (Q_UNLIKELY(index < 0 || size_t(index) >= self->mCachedLayouts.size())) {
        self->assertView(false, "index >= 0 && index < mCachedChildren.size()",
                         "Invalid child index for view View: %1", __LINE__);
        return detachedNode();
    }
    self->mState |= Descended;
    CssLayout* layout = self->mCachedLayouts[size_t(index)];
    if (Q_UNLIKELY(!layout)) {
        Logger::logAssert("child->usesCssLayout()",
                          QStringLiteral("Requested child does not use css layout View: %1")
                              .arg(self->mCachedChildren[size_t(index)]->viewPath()),
                          kLogSource, __LINE__);
        return detachedNode();
    }
    if (Q_UNLIKELY(!layout->isChild()))
        layout->assertView(false, "mIsChild", "mIsChild incorrectly set View: %1", __LINE__);
    return layout->mNode;
}

bool CssLayout::isDirty(void* context)
{
    CssLayout* self = static_cast<CssLayout*>(context);
    // Asked first whenever the engine lays out a node: its children must be known by then.
    self->updateCachedChildren();
    if (self->mState & NodeDirty) {
        self->mState &= ~NodeDirty;
        return true;
    }
    // A cached result restores the left and top only, while a parent that lays out
    // towards the right or the bottom places its children by their other edges.
    const CssLayout* parent = self->isChild() ? self->mFlow : nullptr;
    if (!parent)
        return false;
    const css_flex_direction_t direction = parent->mNode->style.flex_direction;
    return direction == CSS_FLEX_DIRECTION_COLUMN_REVERSE || direction == CSS_FLEX_DIRECTION_ROW_REVERSE ||
           parent->mNode->layout.direction == CSS_DIRECTION_RTL;
}

css_dim_t CssLayout::measureView(void* context, float width)
{
    CssLayout* self = static_cast<CssLayout*>(context);
    const css_style_t& style = self->mNode->style;
    css_dim_t result;
    if (!self->assertView(!self->isFixedSize(), "!isFixedSize()",
                          "Measure should not be called on fixed size views: %1", __LINE__)) {
        result.dimensions[CSS_WIDTH] = style.dimensions[CSS_WIDTH] - horizontalInsets(style);
        result.dimensions[CSS_HEIGHT] = style.dimensions[CSS_HEIGHT] - verticalInsets(style);
        return result;
    }
    if (std::isnan(width) && self->isFixedWidth())
        width = style.dimensions[CSS_WIDTH] - horizontalInsets(style);
    const float maxWidth = style.maxDimensions[CSS_WIDTH] - horizontalInsets(style);
    const float maxHeight = style.maxDimensions[CSS_HEIGHT] - verticalInsets(style);
    if (!std::isnan(maxWidth) && style.maxDimensions[CSS_WIDTH] >= 0 &&
        (std::isnan(width) || width > maxWidth))
        width = maxWidth;
    const QSizeF natural = self->mView->naturalSize(std::isnan(width) ? -1.0 : std::max(0.0, double(width)));
    float measuredWidth = float(natural.width());
    float measuredHeight = float(natural.height());
    if (!std::isnan(maxWidth) && style.maxDimensions[CSS_WIDTH] >= 0)
        measuredWidth = std::min(measuredWidth, std::max(0.0f, maxWidth));
    if (!std::isnan(maxHeight) && style.maxDimensions[CSS_HEIGHT] >= 0)
        measuredHeight = std::min(measuredHeight, std::max(0.0f, maxHeight));
    result.dimensions[CSS_WIDTH] = measuredWidth;
    result.dimensions[CSS_HEIGHT] = measuredHeight;
    return result;
}

void CssLayout::print(void* context)
{
    CssLayout* self = static_cast<CssLayout*>(context);
    std::printf("view: '%s', ", qPrintable(self->mView->viewPath()));
}
