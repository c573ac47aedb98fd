#pragma once

#include "DisplayImage.h"
#include "DisplayViewList.h"
#include "InterpolatedValue.h"
#include "OrbisUIFrameworkExport.h"
#include "Padding.h"
#include "SkinColor.h"
#include "Style.h"
#include "ViewBuffer.h"

#include <QMatrix4x4>
#include <QObject>
#include <QPainter>
#include <QPointF>
#include <QRect>
#include <QRegion>
#include <QVariantMap>
#include <QVector3D>
#include <memory>

extern "C" {
#include <Layout.h>
}

class CssLayout;
class DataValue;
class DisplayDevice;
class DisplayViewAnimation;
class DisplayViewEffect;
class DisplayViewOverlay;
class DisplayViewShadow;
class LayoutAction;
class QKeyEvent;
class StringDataValue;

/// Base of every on-screen element: a node of the view tree under one DisplayDevice,
/// with a rectangle in its parent's coordinates. It turns changes into dirty
/// rectangles that climb to the nearest layer and the device, paints itself and its
/// children in list order, and answers hit tests for touch dispatch.
class ORBIS_UI_EXPORT DisplayView : public QObject
{
    Q_OBJECT

public:
    enum TouchBehavior
    {
        TouchWhileDisabled = 0x1, ///< takes touches even when disabled
        KeepTouches = 0x2,        ///< keeps the touches it holds instead of handing them to children
        IgnoreTouches = 0x4       ///< passes touches through to its parent
    };
    enum TouchGesture
    {
        TapGesture = 0x1,
        DragGesture = 0x2,
        PinchGesture = 0x4,
        RotateGesture = 0x8
    };
    enum UpdateBehavior
    {
        NoUpdates = 0x1,         ///< invalidation is suppressed
        NoParentDirtyArea = 0x2, ///< leaving or joining a parent does not dirty it
        PreserveDirtyRect = 0x4  ///< the layer keeps its content outside dirty rectangles
    };
    enum DrawingBehavior
    {
        NoDrawing = 0x1,      ///< draw() is skipped, children still paint
        DrawWhenHidden = 0x2, ///< painted into its layer even while hidden
    };
    enum CompositingBehavior
    {
        CompositeIntoParentLayer = 0x1
    };
    enum LayoutProperty
    {
        PositionProperty,
        SizeProperty,
        VisibilityProperty,
        StyleProperty,
        FixedSizeProperty,
        MarginProperty
    };

    /// A layout strategy owned by the view (the flex binding is one). The view reports
    /// tree and property changes to it; it computes frames during a layout pass and
    /// writes them back with setLayoutResultRect.
    class LayoutImpl
    {
    public:
        virtual ~LayoutImpl() = default;
        virtual QSizeF size() = 0;
        virtual QPointF topLeft() = 0;
        virtual void setSize(const QSizeF& size) = 0;
        virtual void setTopLeft(const QPointF& topLeft) = 0;
        virtual void layoutPropertyChanged(DisplayView::LayoutProperty property) = 0;
        virtual void childLayoutPropertyChanged(DisplayView* child, DisplayView::LayoutProperty property) = 0;
        virtual void childLayoutDirty(DisplayView* child) = 0;
        virtual bool isFixedSize() = 0;
        virtual void childAdded(DisplayView* child) = 0;
        virtual void childRemoved(DisplayView* child) = 0;
        virtual void childOrderChanged(DisplayView* child) = 0;
        virtual void childrenCleared() = 0;
        /// The view from which a pass must start (a root of the layout tree), or null.
        virtual DisplayView* viewToStartLayout() = 0;
        virtual void layout() = 0;
        virtual void layoutMarkedDirty() = 0;
        virtual LayoutImpl* cloneForPlaceholder(DisplayView* placeholder) = 0;
        virtual bool supportsLayoutAnimations() = 0;
    };

    DisplayView(DisplayView* parent = nullptr, const char* name = nullptr);
    ~DisplayView() override;

    // Virtual operations, in slot order.
    /// Copies the style's properties to the view; a padding or margin list of an
    /// invalid count is reported and ignored.
    virtual void setStyle(const Style& style);
    virtual QRectF boundingRect(float margin);
    virtual float childViewBrightness(DisplayView* child);
    virtual void setCanHaveKeyFocus(bool can, bool recursive);
    virtual void setCanClearKeyFocus(bool can, bool recursive);
    virtual void setFixedSize(bool fixed);
    virtual QPointF visualCenter() const;
    virtual QVariantMap toVariantMap();
    virtual QString sanitizeViewName(QString name);
    virtual QList<DisplayView*> validChildViews();
    virtual QString viewName();
    virtual DisplayView* parentView();
    virtual int shader() const;
    virtual bool isFixedBrightness() const;
    virtual DisplayView* dragGestureDelegate(int touch) const;
    virtual DisplayView* viewAtPoint(QPoint point);
    virtual void initLayer();
    virtual void draw(QPainter& painter);
    virtual void drawChildren(QPainter& painter, QRect rect, QPoint offset);
    virtual void drawChild(DisplayView* child, QPainter& painter, QRect rect, QPoint offset);
    virtual void drawOverlay(QPainter& painter);
    virtual void tick();
    virtual void tick1s();
    virtual void enabled();
    virtual void disabled();
    virtual void shown();
    virtual void hidden();
    virtual void moved();
    virtual void visibilityChanged(DisplayView* view);
    virtual void resized();
    virtual void reskinned();
    virtual void displayAreaChanged();
    virtual void touched(int touch, QPoint point);
    virtual void released(int touch);
    virtual void tapped(int touch, QPoint point);
    virtual void pinched(int touch, double scale);
    virtual void rotated(int touch, double angle);
    virtual void touchCanceled(int touch);
    virtual void scrolled(int touch, QSize delta);
    virtual void wheeled(QPoint point, int delta);
    virtual void dragged(int touch, QSize delta);
    virtual void doKeyPress(QKeyEvent* event);
    virtual void doKeyRelease(QKeyEvent* event);
    virtual void valueChanged(bool animated, double value);
    virtual void valueChanged(bool animated, QString value);
    virtual void gotKeyFocus();
    virtual void lostKeyFocus();
    virtual void gotTouchFocus();
    virtual void lostTouchFocus();
    virtual bool shouldClearTouchFocus(DisplayView* touched);
    virtual void animationStarted();
    virtual void animationComplete();
    virtual void childAdded(DisplayView* child);
    virtual void childRemoved(DisplayView* child);
    virtual void childOrderChanged(DisplayView* child);
    virtual void childrenCleared();
    virtual void place();
    virtual void layoutImplChanged();
    virtual void doLayout();
    /// The size the view would take if given `width` (negative: as wide as it likes).
    /// The flex layout measures views through it; a plain view keeps its own size.
    virtual QSizeF naturalSize(double width);

    /// Tree.
    void changeParent(DisplayView* parent);
    void raise(DisplayView* above = nullptr);
    void lower(DisplayView* below = nullptr);
    void clearAllChildren();
    bool isChildOf(DisplayView* ancestor) const;
    DisplayView* createPlaceholder(DisplayView* placeholder);
    void addToChildrenList(DisplayView* child);
    void removeFromChildrenList(DisplayView* child);
    const DisplayViewList& children() const { return mChildren; }
    DisplayDevice* device() const { return mDevice; }
    bool isParentChildrenIteratorValid() const;
    void resetParentChildrenIterator();

    /// Geometry and animation. Every animated setter takes a duration in seconds (0:
    /// at once), an easing and a delay in seconds.
    using EaseType = InterpolatedValue::EaseType;
    static constexpr EaseType kDefaultEase = InterpolatedValue::EaseInOutCubic;
    void moveTo(int x, int y, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveLeft(int x, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveTop(int y, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveRight(int right, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveBottom(int bottom, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveHorizontalCenter(int x, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveVerticalCenter(int y, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveCenter(int x, int y, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveCenter(QPoint center, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveVisualTo(int x, int y, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveVisualLeft(int x, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveVisualTop(int y, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveVisualRight(int right, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveVisualBottom(int bottom, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void moveVisualCenter(QPoint center, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void resizeTo(int width, int height, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void resizeVisualTo(int width, int height, double duration = 0, EaseType ease = kDefaultEase,
                        double delay = 0);
    void setWidth(int width, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void setVisualWidth(int width, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void setHeight(int height, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void setVisualHeight(int height, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    /// With showHide, a fade to 0 hides the view when it completes and a fade from a
    /// hidden state shows it first; with fromCurrent false the fade starts from the
    /// opposite end.
    void setAlpha(float alpha, double duration = 0, EaseType ease = kDefaultEase, bool showHide = false,
                  double delay = 0, bool fromCurrent = true);
    void fadeIn(double duration = 0.3, EaseType ease = kDefaultEase, double delay = 0);
    void fadeOut(double duration = 0.3, EaseType ease = kDefaultEase, double delay = 0);
    void setScale(float scale, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void setScale(float scale, QPointF pivot, double duration = 0, EaseType ease = kDefaultEase,
                  double delay = 0);
    void setAngle(float angle, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    void setAngle(float angle, QPointF pivot, QVector3D axis, double duration = 0,
                  EaseType ease = kDefaultEase, double delay = 0);
    void setBrightness(float brightness, double duration = 0, EaseType ease = kDefaultEase, double delay = 0);
    /// Briefly brightens the view (or the given one) and returns to its brightness.
    void flash(DisplayView* view = nullptr, double duration = 0.2);
    void deleteAfterAnimation();
    /// The view follows its parent's size from now on: by fractions of it, or at fixed
    /// distances from its edges.
    void autoResizeToParent(const QRectF& relative);
    void autoResizeWidthToParent(int left, int right);
    void autoResizeHeightToParent(int top, int bottom);
    void autoResizeToParentWithMargins(const Padding& margins);

    double x() const { return mX; }
    double y() const { return mY; }
    int width() const { return mWidth; }
    int height() const { return mHeight; }
    QPoint position() const { return QPoint(int(mX), int(mY)); }
    /// The rectangle in the parent's coordinates (position truncated toward zero).
    QRect rect() const { return QRect(int(mX), int(mY), mWidth, mHeight); }
    QSize size() const { return QSize(mWidth, mHeight); }
    QPoint center() const { return rect().center(); }
    QRect relativePositionRect(DisplayView* ancestor) const;
    /// How far the children are scrolled: a child at (x, y) appears at (x, y) minus this
    /// offset. Scrolling containers move it; for any other view it is (0, 0).
    QPoint contentOffset() const;
    /// Where the view appears in its parent: its position less the parent's content offset.
    QPoint positionInParent() const;
    QRect drawingRect() const;
    QRect drawingAreaRect() const;
    QRect drawingLayerRect() const;
    QRect transformedOpaqueRect() const;
    void setClip(const QRect& clip);
    void setOpaque(const QRect& opaque);
    float alpha() const { return mAlpha; }
    float brightness() const;
    float scale() const;
    float angle() const;

    /// Visibility and enablement.
    void show(bool visible = true);
    void hide() { show(false); }
    bool isVisible(DisplayView* stopAt = nullptr);
    bool visibleFlag() const { return mVisible; }
    void enable(bool on = true, bool recursive = false);
    void disable(bool on = true, bool recursive = false);
    bool isEnabled() const { return mEnabled; }
    void reveal(bool force = false);

    /// Invalidation.
    void update();
    void update(const QRect& rect);
    void update(const QRegion& region);
    void update(DisplayView* source, const QRect& rect, bool force);
    void markDirtyRectsForRendering(bool recursive, bool force);
    void updateDisplayArea();

    /// Painting.
    void drawViewAndChildren(QPainter& painter);
    void drawText(QPainter& painter, const QRect& rect, int flags, const QString& text, const QColor& color);

    /// Layers.
    void setUseLayer(bool useLayer, bool cached = false);
    bool useLayer() const { return mUseLayer; }
    void setUseCachedLayer(bool cached);
    void initCachedLayer(const QSize& size);
    void setLayer(ViewBuffer* layer);
    /// The layer is composited through the mask's alpha, stretched over the layer.
    void setLayerMask(const DisplayImage& mask);
    const DisplayImage& layerMask() const;
    void setLayerBackingType(ViewBuffer::BackingType type);
    void setLayerTransform(const QMatrix4x4& transform);
    const QMatrix4x4& layerTransform() const;
    void updateTransform();
    void setCompositeNestedLayers(bool composite);
    void updateCompositeNestedLayers();
    void setLayoutScale(double scale);
    double layoutScale() const;
    void setEffect(DisplayViewEffect* effect);
    void setOverlay(DisplayViewOverlay* overlay);
    void setShadow(DisplayViewShadow* shadow);
    void setShadowPadding(const Padding& padding);
    ViewBuffer* layer() const;
    DisplayView* layerView();
    void setUseDisplayList();
    DisplayViewEffect* effect() const;

    // Background.
    /// An image of the assets folder by name. With stretch the image fills the view
    /// by its own fill (stretched through its cuts, or tiled); without, it is drawn
    /// at its size in the middle.
    void setBackground(const char* imageName, bool stretch = true);
    void setBackground(const DisplayImage& image, bool stretch = true);
    const DisplayImage& backgroundImage() const;
    void setBackgroundColor(const SkinColor& color, double opacity = 1.0);
    void setBackgroundOpacity(double opacity);
    void clearBackground();

    /// Behaviour flags.
    void setTouchBehavior(TouchBehavior behavior, bool on);
    /// A view that takes a gesture gets it itself. A view that requires drags (a
    /// scrolling container) also gets the drags that start on descendants that neither
    /// take drags nor name a drag delegate.
    void setTouchGesture(TouchGesture gesture, bool on);
    void setRequiredTouchGesture(TouchGesture gesture, bool on);
    void setIgnoreDragGestures(bool horizontal, bool vertical);
    bool hasTouchBehavior(TouchBehavior behavior) const;
    bool hasTouchGesture(TouchGesture gesture) const;
    bool requiresTouchGesture(TouchGesture gesture) const;
    void setUpdateBehavior(UpdateBehavior behavior, bool on);
    void setDrawingBehavior(DrawingBehavior behavior, bool on);
    void setCompositingBehavior(CompositingBehavior behavior, bool on);
    void setTouchPadding(const Padding& padding);
    Padding touchPadding() const;
    void setDragGestureDelegate(DisplayView* delegate);

    /// Focus and touch.
    void getKeyFocus();
    bool hasKeyFocus();
    void resignKeyFocus(bool toParent = false);
    void getTouchFocus();
    bool hasTouchFocus();
    void resignTouchFocus();
    void transferTouch(int touch, DisplayView* to);
    bool touchable(int touch);
    void incrementTouchCount();
    void decrementTouchCount();
    int touchCount() const { return mTouchCount; }
    /// True while the destructor runs: the view must not take new work.
    bool isDestroying() const { return mDestroying; }
    bool canHaveKeyFocus() const { return mCanHaveKeyFocus; }

    /// Value binding.
    void setValueSource(DataValue& value);
    void setValueSource(StringDataValue& value);
    void clearValueSource();
    DataValue* valueSource() const;
    double currentValue();
    void setCurrentValue(double value);
    void addToValueSource(double delta);
    bool dvConnect(DataValue& value, const char* slot, bool callNow);

    /// Layout.
    void setLayoutImpl(LayoutImpl* impl);
    LayoutImpl* layoutImpl() const { return mLayoutImpl.get(); }
    /// Flex layout: the view takes part in its parent's flex flow (when the parent has
    /// one) and lays out its own children by flex rules. The css setters enable it; so
    /// does a style with flex attributes, and joining a flex parent.
    void enableCssLayout();
    void disableCssLayout();
    /// A view that places its own children (a scrolling view, a control with a title)
    /// keeps them out of any flex flow it joins; the children may still lay out their
    /// own subtrees by flex rules.
    void setPlacesOwnChildren(bool places);
    bool placesOwnChildren() const { return mPlacesOwnChildren; }
    bool usesCssLayout() const { return cssLayout() != nullptr; }
    CssLayout* cssLayout() const;
    void setCssDirection(css_direction_t direction);
    css_direction_t cssDirection() const;
    void setCssFlexDirection(css_flex_direction_t direction);
    css_flex_direction_t cssFlexDirection() const;
    void setCssJustifyContent(css_justify_t justify);
    css_justify_t cssJustifyContent() const;
    void setCssAlignContent(css_align_t align);
    css_align_t cssAlignContent() const;
    void setCssAlignItems(css_align_t align);
    css_align_t cssAlignItems() const;
    void setCssAlignSelf(css_align_t align);
    css_align_t cssAlignSelf() const;
    void setCssFlexWrap(css_wrap_type_t wrap);
    css_wrap_type_t cssFlexWrap() const;
    void setCssPositionType(css_position_type_t type);
    css_position_type_t cssPositionType() const;
    void setCssFlex(float flex);
    float cssFlex() const;
    /// Four-element forms are in the order top, right, bottom, left; six-element forms
    /// add start and end.
    void setCssPosition(css_position_t edge, float value);
    void setCssPosition(const float (&edges)[4]);
    void setCssPosition(float top, float right, float bottom, float left);
    void setCssTopLeft(const QPointF& topLeft);
    float cssPosition(css_position_t edge) const;
    QPointF cssTopLeft() const;
    float cssTop() const;
    float cssLeft() const;
    float cssRight() const;
    float cssBottom() const;
    void setCssSize(css_dimension_t dimension, float value);
    void setCssSize(const QSizeF& size);
    void setCssWidth(float width);
    void setCssHeight(float height);
    QSizeF cssSize() const;
    float cssWidth() const;
    float cssHeight() const;
    void setCssMinSize(css_dimension_t dimension, float value);
    void setCssMinSize(const QSizeF& size);
    void setCssMinWidth(float width);
    void setCssMinHeight(float height);
    QSizeF cssMinSize() const;
    void setCssMaxSize(css_dimension_t dimension, float value);
    void setCssMaxSize(const QSizeF& size);
    void setCssMaxWidth(float width);
    void setCssMaxHeight(float height);
    QSizeF cssMaxSize() const;
    void setCssMargin(css_position_t edge, float value);
    void setCssMargin(const float (&edges)[6]);
    void setCssMargin(const Padding& margin);
    void setCssMargin(float top, float right, float bottom, float left, float start, float end);
    float cssMargin(css_position_t edge) const;
    void setCssPadding(css_position_t edge, float value);
    void setCssPadding(const float (&edges)[6]);
    void setCssPadding(const Padding& padding);
    void setCssPadding(float top, float right, float bottom, float left, float start, float end);
    float cssPadding(css_position_t edge) const;
    void setCssBorder(css_position_t edge, float value);
    void setCssBorder(const float (&edges)[6]);
    void setCssBorder(const Padding& border);
    void setCssBorder(float top, float right, float bottom, float left, float start, float end);
    float cssBorder(css_position_t edge) const;
    bool fixedSize() const { return mFixedSize; }
    void setLayoutMargin(const Padding& margin);
    Padding layoutMargin() const;
    void setEnableDeferredLayout(bool enable);
    bool deferredLayoutEnabled() const { return mEnableDeferredLayout; }
    void layoutPropertyChanged(LayoutProperty property);
    bool checkForRecursiveLayout(LayoutProperty property);
    void markLayoutDirty();
    bool isLayoutDirty() const { return mLayoutDirty; }
    bool isLayoutInProgress() const { return mLayoutInProgress; }
    void queueForLayout();
    void deferredLayout();
    void layout(bool force = false);
    void visitForLayout();
    void visitChildrenForLayout();
    void placeRecursively();
    void setLayoutResultPosition(const QPointF& position);
    void setLayoutResultSize(const QSizeF& size);
    void setLayoutResultRect(const QRectF& rect);
    QRectF layoutResultRect() const;
    void setLayoutAction(LayoutAction* action, bool owned);

    /// Diagnostics.
    QString viewPath();
    void setViewName(QString name);
    const Style& style() const;

    static const QMatrix4x4 sIdentityMatrix;
    /// Layout work of the running process, for the frame statistics.
    static inline int sPlaceCount = 0;
    static inline int sVisitedCount = 0;
    /// Largest coordinate a view may take, so that edges and painting stay exact.
    static constexpr int kMaxCoordinate = 1 << 24;

signals:
    void updated(DisplayView* view, QRect rect);
    void animationStarted(DisplayView* view);
    void animationComplete(DisplayView* view);
    void enabled(DisplayView* view);
    void disabled(DisplayView* view);
    void moved(DisplayView* view);
    void resized(DisplayView* view);
    void displayAreaChanged(DisplayView* view);
    void tapped(DisplayView* view);
    void gotTouchFocus(DisplayView* view);
    void lostTouchFocus(DisplayView* view);
    void visibleFlagChanged(DisplayView* view);

public slots:
    /// Called by the style when its text or a named style it uses changes.
    virtual void restyled();
    void sourceValueChanged(DataValue* value);
    void sourceValueChanged(StringDataValue* value);

protected:
    /// Reports misuse about this view: the message's %1 is filled with viewPath().
    bool viewAssert(const char* condition, const QString& message, int line);
    /// Applies geometry at once, as a finished animation or a layout result does.
    void applyPosition(double x, double y);
    void applySize(int width, int height);
    void applyAlpha(double alpha);
    void applyBrightness(float brightness);
    void applyScale(double scale);
    void applyAngle(double angle);
    /// Moves the children's origin; placing them and repainting are the caller's part.
    void setContentOffset(const QPoint& offset);

private:
    friend class DisplayViewList;
    friend class DisplayViewAnimation;
    friend class DisplayDevice;
    friend class CssLayout;

    void setDevice(DisplayDevice* device);
    bool acceptsTouches() const;
    QRect mapRectToParent(const QRect& rect) const;
    void revealInDevice(const QRect& rect);
    /// The layer into whose buffer this layer is composited instead of onto the screen.
    DisplayView* nestingTarget() const;
    /// Shows this layer's area again, before and after it moves on screen.
    void recomposite();
    void drawDebugPadding(QPainter& painter);
    DisplayViewAnimation* animation(bool create);
    /// The value a property is heading for: the animation's target while one runs.
    double pendingValue(int property);
    bool checkGeometryChange(bool animated, const char* circularMessage, int line);
    /// Starts (or, without duration and delay, stops) the animation of one or two
    /// properties; returns whether the change was taken care of.
    bool animateOrStop(int first, double firstTarget, int second, double secondTarget, double duration,
                       EaseType ease, double delay);
    QRect visualOffsetRect() const;
    void applyAutoResize();
    /// Feeds the style's flex attributes to the flex binding.
    void applyCssStyle(const Style& style);
    const CssLayout& cssValues() const;

    DisplayView* mParentView = nullptr;
    DisplayDevice* mDevice = nullptr;
    DisplayViewList mChildren;
    DisplayViewList::iterator mParentChildrenIterator;

    double mX = 0;
    double mY = 0;
    int mWidth = 0;
    int mHeight = 0;
    // Every plain view pays for these, so they are kept narrow: the setters take
    // floats, and the flags share bytes. Scale, angle and brightness live in the extras.
    float mAlpha = 1.0f;
    int mTouchCount = 0;
    QRect mPlacedRect;
    quint16 mTouchFlags = 0;
    quint8 mUpdateFlags = 0;
    quint8 mDrawingFlags = 0;
    quint8 mCompositingFlags = 0;
    bool mVisible : 1;
    bool mEnabled : 1;
    bool mFixedBrightness : 1;
    bool mUseLayer : 1;
    bool mCachedLayer : 1;
    bool mCompositeNestedLayers : 1;
    bool mCanHaveKeyFocus : 1;
    bool mCanClearKeyFocus : 1;
    bool mDestroying : 1;
    bool mDeleteAfterAnimation : 1;
    bool mPlacesOwnChildren : 1;
    bool mInMoved : 1;
    bool mInResized : 1;
    bool mEnableDeferredLayout : 1;
    bool mLayoutDirty : 1;
    bool mLayoutInProgress : 1;
    bool mFixedSize : 1;
    bool mUseDisplayList : 1;
    bool mLayerTransformed : 1; // the layer's transform in the extras is not the identity
    bool mLayoutIsCss : 1;      // mLayoutImpl is the flex binding

    std::unique_ptr<LayoutImpl> mLayoutImpl;
    QString mViewName;
    Style mStyle;

    /// What few views use lives apart, so that a plain view stays small.
    struct Extras;
    std::unique_ptr<Extras> mExtras;
    Extras& extras();
    const Extras& ext() const;
};
