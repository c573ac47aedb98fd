#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"

#include <QPointF>
#include <QSizeF>
#include <vector>

// The flex binding of a view. It owns one node of the flexbox engine and keeps the
// node's style, children and results in step with the view tree: the children of the
// node are the children of the view that take part in the flow, a pass runs from the
// top of each dirty flex subtree, and the results come back to the views as their
// layout result rectangles.
//
// Edge arrays follow the Padding order: top, right, bottom, left, then start and end
// for margins, paddings and borders. Unset values are undefined (NaN).
class ORBIS_UI_INTERNAL_EXPORT CssLayout : public DisplayView::LayoutImpl
{
public:
    enum OptionFlag
    {
        // The view is measured: the engine asks for its natural size at the width it
        // offers (DisplayView::naturalSize) wherever the flow leaves a size open.
        Measure = 0x8
    };

    explicit CssLayout(DisplayView* view);
    ~CssLayout() override;
    CssLayout(const CssLayout&) = delete;
    CssLayout& operator=(const CssLayout&) = delete;

    // The values a view without a flex binding reports.
    static const CssLayout& unbound();

    // LayoutImpl, in slot order. The size and top-left are the css ones: a view placed
    // by hand keeps that place through the passes.
    QSizeF size() override;
    QPointF topLeft() override;
    void setSize(const QSizeF& size) override;
    void setTopLeft(const QPointF& topLeft) override;
    void layoutPropertyChanged(DisplayView::LayoutProperty property) override;
    void childLayoutPropertyChanged(DisplayView* child, DisplayView::LayoutProperty property) override;
    void childLayoutDirty(DisplayView* child) override;
    bool isFixedSize() override;
    void childAdded(DisplayView* child) override;
    void childRemoved(DisplayView* child) override;
    void childOrderChanged(DisplayView* child) override;
    void childrenCleared() override;
    DisplayView* viewToStartLayout() override;
    void layout() override;
    void layoutMarkedDirty() override;
    LayoutImpl* cloneForPlaceholder(DisplayView* placeholder) override;
    bool supportsLayoutAnimations() override;

    DisplayView* view() const { return mView; }
    css_node_t* node() const { return mNode; }

    // Enumerations.
    void setCssDirection(css_direction_t direction);
    css_direction_t cssDirection() const { return mNode->style.direction; }
    void setCssFlexDirection(css_flex_direction_t direction);
    css_flex_direction_t cssFlexDirection() const { return mNode->style.flex_direction; }
    void setCssJustifyContent(css_justify_t justify);
    css_justify_t cssJustifyContent() const { return mNode->style.justify_content; }
    void setCssAlignContent(css_align_t align);
    css_align_t cssAlignContent() const { return mNode->style.align_content; }
    void setCssAlignItems(css_align_t align);
    css_align_t cssAlignItems() const { return mNode->style.align_items; }
    void setCssAlignSelf(css_align_t align);
    css_align_t cssAlignSelf() const { return mNode->style.align_self; }
    void setCssFlexWrap(css_wrap_type_t wrap);
    css_wrap_type_t cssFlexWrap() const { return mNode->style.flex_wrap; }
    void setCssPositionType(css_position_type_t type);
    css_position_type_t cssPositionType() const { return mNode->style.position_type; }
    void setCssFlex(float flex);
    float cssFlex() const { return mNode->style.flex; }

    // Position offsets: left, top, right and bottom only.
    void setCssPosition(css_position_t edge, float value);
    void setCssPosition(const float (&edges)[4]);
    void setCssPosition(float top, float right, float bottom, float left);
    void setCssTopLeft(const QPointF& topLeft);
    float cssPosition(css_position_t edge) const;
    QPointF cssTopLeft() const;
    float cssTop() const { return mNode->style.position[CSS_TOP]; }
    float cssLeft() const { return mNode->style.position[CSS_LEFT]; }
    float cssRight() const { return mNode->style.position[CSS_RIGHT]; }
    float cssBottom() const { return mNode->style.position[CSS_BOTTOM]; }

    // Sizes.
    void setCssSize(css_dimension_t dimension, float value);
    void setCssSize(const QSizeF& size);
    void setCssWidth(float width) { setCssSize(CSS_WIDTH, width); }
    void setCssHeight(float height) { setCssSize(CSS_HEIGHT, height); }
    QSizeF cssSize() const;
    float cssWidth() const { return mNode->style.dimensions[CSS_WIDTH]; }
    float cssHeight() const { return mNode->style.dimensions[CSS_HEIGHT]; }
    void setCssMinSize(css_dimension_t dimension, float value);
    void setCssMinSize(const QSizeF& size);
    void setCssMinWidth(float width) { setCssMinSize(CSS_WIDTH, width); }
    void setCssMinHeight(float height) { setCssMinSize(CSS_HEIGHT, height); }
    QSizeF cssMinSize() const;
    void setCssMaxSize(css_dimension_t dimension, float value);
    void setCssMaxSize(const QSizeF& size);
    void setCssMaxWidth(float width) { setCssMaxSize(CSS_WIDTH, width); }
    void setCssMaxHeight(float height) { setCssMaxSize(CSS_HEIGHT, height); }
    QSizeF cssMaxSize() const;
    // A size the flow cannot change: a defined, non-negative css width / height / both.
    bool isFixedWidth() const;
    bool isFixedHeight() const;

    // Edges. A Padding sets the four physical edges and leaves start and end undefined.
    void setCssMargin(css_position_t edge, float value);
    void setCssMargin(const float (&edges)[6]);
    void setCssMargin(const Padding& margin);
    void setCssMargin(float top, float right, float bottom, float left, float start, float end);
    float cssMargin(css_position_t edge) const
    {
        return edge < CSS_POSITION_COUNT ? mNode->style.margin[edge] : CSS_UNDEFINED;
    }
    void setCssPadding(css_position_t edge, float value);
    void setCssPadding(const float (&edges)[6]);
    void setCssPadding(const Padding& padding);
    void setCssPadding(float top, float right, float bottom, float left, float start, float end);
    float cssPadding(css_position_t edge) const
    {
        return edge < CSS_POSITION_COUNT ? mNode->style.padding[edge] : CSS_UNDEFINED;
    }
    void setCssBorder(css_position_t edge, float value);
    void setCssBorder(const float (&edges)[6]);
    void setCssBorder(const Padding& border);
    void setCssBorder(float top, float right, float bottom, float left, float start, float end);
    float cssBorder(css_position_t edge) const
    {
        return edge < CSS_POSITION_COUNT ? mNode->style.border[edge] : CSS_UNDEFINED;
    }

    void setOption(OptionFlag option, bool on);
    bool hasOption(OptionFlag option) const { return (mOptions & option) != 0; }
    // Installs or removes the measure callback to match the Measure option.
    void updateMeasure();

    // Tree bookkeeping.
    void childLayoutAdded(CssLayout* child);
    void childLayoutRemoved(CssLayout* child);
    void updateIsChild();
    bool determineIsChild();
    void setIsChild();
    void clearIsChild();
    bool isChild() const { return (mState & IsChild) != 0; }
    void invalidateChildrenCache();
    void updateCachedChildren();
    bool isVisibleForLayout() const;
    // The views whose nodes are this node's children, in child order.
    const std::vector<DisplayView*>& cachedChildren();

    // The pass.
    void computeLayout();
    void commitLayout();
    bool parentComputedLayout() const;

    // Callbacks handed to the engine; the context is the CssLayout.
    static css_node_t* getChild(void* context, int index);
    static bool isDirty(void* context);
    static css_dim_t measureView(void* context, float width);
    static void print(void* context);

private:
    enum StateFlag
    {
        ChildrenCacheInvalid = 0x1,
        IsChild = 0x2,
        // Marked dirty since the engine last laid the node out: its cache is no answer.
        NodeDirty = 0x4,
        // The engine went down to the children in this pass (it did not take the cache).
        Descended = 0x8
    };

    struct Unbound
    {
    };
    explicit CssLayout(Unbound);

    static CssLayout* layoutOf(DisplayView* view);
    CssLayout* parentLayout() const;
    bool hasCssChildren();
    // The view's layout must be recomputed: resets the engine's cache of this node and
    // has the pass queued, from the top of the flex tree.
    void markDirty();
    // A node whose direction is inherited can keep results of the old direction in the
    // engine's cache: invalidate every such descendant.
    void invalidateInheritedDirection();
    // Forgets results that were computed but never committed, here and below.
    void discardUncommitted();
    bool assertView(bool condition, const char* expression, const char* message, int line) const;
    void forgetCommitted();

    void setEdges(float (&target)[6], const float (&values)[6], void (CssLayout::*changed)());
    void setEdge(float (&target)[6], css_position_t edge, float value, void (CssLayout::*changed)());
    void marginChanged();
    void paddingChanged();
    void borderChanged();
    template <typename T> void setStyleValue(T& field, T value);
    void setDimension(float (&target)[2], css_dimension_t dimension, float value);

    DisplayView* mView;
    css_node_t* mNode;
    // The binding whose flow this view is in, while it is a member.
    CssLayout* mFlow = nullptr;
    quint8 mState = ChildrenCacheInvalid | NodeDirty;
    // True while this view's results and those of its flow are being committed.
    bool mCommitting = false;
    std::vector<DisplayView*> mCachedChildren;
    // Their bindings, side by side, for the engine's many calls of getChild; a binding
    // that goes away leaves a null here until the cache is rebuilt.
    std::vector<CssLayout*> mCachedLayouts;
    // The last rectangle handed to the view (NaN: none, or the view was placed by hand
    // since): an unchanged result is not handed again.
    float mCommitted[4] = {CSS_UNDEFINED, CSS_UNDEFINED, CSS_UNDEFINED, CSS_UNDEFINED};
    quint32 mOptions = 0;
};
