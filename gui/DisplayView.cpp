#include "DisplayView.h"

#include "CssLayout.h"
#include "DataValue.h"
#include "DisplayDevice.h"
#include "DisplayViewExtras.h"
#include "DisplayViewOverlay.h"
#include "DisplayViewShadow.h"
#include "DrawingContext.h"
#include "LayoutAction.h"
#include "Logger.h"
#include "RenderItem.h"
#include "StringDataValue.h"
#include "TouchOwnership.h"

#include <QMetaMethod>
#include <QSet>
#include <cstdlib>
#include <mutex>

static const char* const kLogSource = "../../../gui/DisplayView";

const QMatrix4x4 DisplayView::sIdentityMatrix;

// Views of one kind mostly carry the same name: they share its characters rather
// than each holding a copy. The table is bounded, so names made up at run time
// (one per row, say) cannot grow it without end.
static QString sharedViewName(const QString& name)
{
    static const int kMaxSharedNames = 4096;
    static std::mutex mutex;
    static QSet<QString> names;
    if (name.isEmpty())
        return name;
    std::lock_guard<std::mutex> lock(mutex);
    const auto found = names.constFind(name);
    if (found != names.cend())
        return *found;
    if (names.size() < kMaxSharedNames)
        names.insert(name);
    return name;
}

DisplayView::DisplayView(DisplayView* parent, const char* name)
    : mVisible(true), mEnabled(true), mFixedBrightness(false), mUseLayer(false), mCachedLayer(false),
      mCompositeNestedLayers(false), mCanHaveKeyFocus(false), mCanClearKeyFocus(true), mDestroying(false),
      mDeleteAfterAnimation(false), mPlacesOwnChildren(false), mInMoved(false), mInResized(false),
      mEnableDeferredLayout(false), mLayoutDirty(false), mLayoutInProgress(false), mFixedSize(false),
      mUseDisplayList(false), mLayerTransformed(false), mLayoutIsCss(false),
      mViewName(sharedViewName(sanitizeViewName(QString::fromLatin1(name))))
{
    resetParentChildrenIterator();
    place();
    if (parent) {
        mParentView = parent;
        mDevice = parent->mDevice;
        setParent(parent);
        parent->addToChildrenList(this);
    }
}

DisplayView::~DisplayView()
{
    mDestroying = true;
    if (parent() != mParentView)
        viewAssert("parent() == mParentView", QStringLiteral("Unexpected qobject parent for view View: %1"),
                   __LINE__);
    if (mDevice && mDevice != this)
        mDevice->removeReferences(this);
    if (mParentView) {
        if (!(mUpdateFlags & NoParentDirtyArea))
            reveal(false);
        DisplayView* parent = mParentView;
        parent->removeFromChildrenList(this);
        mParentView = nullptr;
        parent->childRemoved(this);
    }
    clearValueSource();
    mStyle.unregisterListener(this);
    while (!mChildren.isEmpty())
        delete mChildren.last();
    if (ext().mOwnsLayoutAction)
        delete ext().mLayoutAction;
}

ViewBuffer* DisplayView::layer() const
{
    return mExtras ? mExtras->mLayer.get() : nullptr;
}

DataValue* DisplayView::valueSource() const
{
    return mExtras ? mExtras->mValueSource : nullptr;
}

CssLayout* DisplayView::cssLayout() const
{
    return mLayoutIsCss ? static_cast<CssLayout*>(mLayoutImpl.get()) : nullptr;
}

float DisplayView::scale() const
{
    return ext().mScale;
}

float DisplayView::angle() const
{
    return ext().mAngle;
}

float DisplayView::brightness() const
{
    return ext().mBrightness;
}

const QMatrix4x4& DisplayView::layerTransform() const
{
    return mLayerTransformed ? mExtras->mTransform : sIdentityMatrix;
}

DisplayView::Extras& DisplayView::extras()
{
    if (!mExtras)
        mExtras = std::make_unique<Extras>();
    return *mExtras;
}

const DisplayView::Extras& DisplayView::ext() const
{
    static const Extras kNone;
    return mExtras ? *mExtras : kNone;
}

double DisplayView::layoutScale() const
{
    return ext().mLayoutScale;
}

DisplayViewEffect* DisplayView::effect() const
{
    return ext().mEffect;
}

Padding DisplayView::layoutMargin() const
{
    return ext().mLayoutMargin;
}

QRectF DisplayView::layoutResultRect() const
{
    return ext().mLayoutResultRect;
}

bool DisplayView::viewAssert(const char* condition, const QString& message, int line)
{
    return Logger::logAssert(condition, message.arg(viewPath()), kLogSource, line);
}

// Tree

void DisplayView::setDevice(DisplayDevice* device)
{
    if (device == mDevice)
        return;
    if (mDevice && mDevice != this)
        mDevice->removeReferences(this);
    mDevice = device;
    for (DisplayView* child : mChildren.list())
        child->setDevice(device);
}

void DisplayView::addToChildrenList(DisplayView* child)
{
    mChildren.append(child);
    if (layoutImpl())
        layoutImpl()->childAdded(child);
}

void DisplayView::removeFromChildrenList(DisplayView* child)
{
    mChildren.remove(child);
    if (layoutImpl())
        layoutImpl()->childRemoved(child);
}

bool DisplayView::isParentChildrenIteratorValid() const
{
    // The parent's list re-points its children's iterators whenever it detaches, so a
    // set iterator always refers to a node of the parent's current storage.
    return mParentView && mParentChildrenIterator.i != nullptr && *mParentChildrenIterator == this;
}

void DisplayView::resetParentChildrenIterator()
{
    mParentChildrenIterator = DisplayViewList::iterator();
}

void DisplayView::changeParent(DisplayView* parent)
{
    if (parent == mParentView)
        return;
    if (parent &&
        !ORBIS_ASSERT(parent != this && !parent->isChildOf(this),
                      QStringLiteral("A view cannot become a child of itself or of its descendants")))
        return;
    if (DisplayView* old = mParentView) {
        if (!(mUpdateFlags & NoParentDirtyArea))
            reveal(false);
        old->removeFromChildrenList(this);
        mParentView = nullptr;
        old->childRemoved(this);
    }
    mParentView = parent;
    setDevice(parent ? parent->mDevice : nullptr);
    setParent(parent);
    if (parent) {
        parent->addToChildrenList(this);
        parent->childAdded(this);
        if (!(mUpdateFlags & NoParentDirtyArea))
            reveal(false);
    }
    if (mEnableDeferredLayout)
        queueForLayout();
    else
        placeRecursively();
}

void DisplayView::raise(DisplayView* above)
{
    if (above && above->mParentView != mParentView) {
        Logger::logAssert("above->parentView() == parentView()",
                          QStringLiteral("Trying to use raise() on a view that doesn't have same parent!"),
                          kLogSource, __LINE__);
        return;
    }
    if (!mParentView || above == this)
        return;
    DisplayViewList& parentChildren = mParentView->mChildren;
    if (!above &&
        !ORBIS_ASSERT(!parentChildren.isEmpty(), QStringLiteral("Raising a view its parent does not list")))
        return;
    parentChildren.remove(this);
    if (above) {
        if (!ORBIS_ASSERT(above->isParentChildrenIteratorValid(),
                          QStringLiteral("Invalid children iterator"))) {
            parentChildren.append(this);
            return;
        }
        DisplayViewList::iterator next = above->mParentChildrenIterator;
        parentChildren.insert(++next, this);
    } else {
        parentChildren.append(this);
    }
    if (mParentView->layoutImpl())
        mParentView->layoutImpl()->childOrderChanged(this);
    mParentView->childOrderChanged(this);
    reveal(false);
}

void DisplayView::lower(DisplayView* below)
{
    if (below && below->mParentView != mParentView) {
        Logger::logAssert("below->parentView() == parentView()",
                          QStringLiteral("Trying to use lower() on a view that doesn't have same parent!"),
                          kLogSource, __LINE__);
        return;
    }
    if (!mParentView || below == this)
        return;
    DisplayViewList& parentChildren = mParentView->mChildren;
    parentChildren.remove(this);
    if (below) {
        if (!ORBIS_ASSERT(below->isParentChildrenIteratorValid(),
                          QStringLiteral("Invalid children iterator"))) {
            parentChildren.prepend(this);
            return;
        }
        parentChildren.insert(below->mParentChildrenIterator, this);
    } else {
        parentChildren.prepend(this);
    }
    if (mParentView->layoutImpl())
        mParentView->layoutImpl()->childOrderChanged(this);
    mParentView->childOrderChanged(this);
    reveal(false);
}

void DisplayView::clearAllChildren()
{
    while (!mChildren.isEmpty())
        delete mChildren.last();
    if (layoutImpl())
        layoutImpl()->childrenCleared();
    childrenCleared();
}

bool DisplayView::isChildOf(DisplayView* ancestor) const
{
    for (DisplayView* view = mParentView; view; view = view->mParentView) {
        if (view == ancestor)
            return true;
    }
    return false;
}

DisplayView* DisplayView::createPlaceholder(DisplayView* placeholder)
{
    if (!mParentView) {
        Logger::logAssert("mParentView",
                          QStringLiteral("Trying to create a placeholder for a view without a parent."),
                          kLogSource, __LINE__);
        return nullptr;
    }
    if (!ORBIS_ASSERT(placeholder && placeholder != this, QStringLiteral("Invalid placeholder")))
        return nullptr;
    placeholder->changeParent(nullptr);
    placeholder->mParentView = mParentView;
    placeholder->setDevice(mDevice);
    placeholder->setParent(mParentView);
    mParentView->mChildren.insert(mParentChildrenIterator, placeholder);
    if (!ORBIS_ASSERT(placeholder->isParentChildrenIteratorValid(),
                      QStringLiteral("Invalid children iterator")))
        return placeholder;
    if (layoutImpl())
        placeholder->setLayoutImpl(layoutImpl()->cloneForPlaceholder(placeholder));
    placeholder->applyPosition(mX, mY);
    placeholder->applySize(mWidth, mHeight);
    if (mParentView->layoutImpl())
        mParentView->layoutImpl()->childAdded(placeholder);
    mParentView->childAdded(placeholder);
    return placeholder;
}

// Visibility and enablement

bool DisplayView::isVisible(DisplayView* stopAt)
{
    if (!mVisible)
        return false;
    if (stopAt == this)
        return mVisible;
    for (DisplayView* view = mParentView; view; view = view->mParentView) {
        if (view == stopAt)
            return view->mVisible;
        if (!view->mVisible)
            return false;
    }
    return true;
}

void DisplayView::show(bool visible)
{
    if (visible == mVisible)
        return;
    if (!visible)
        reveal(true);
    mVisible = visible;
    emit visibleFlagChanged(this);
    reveal(true);
    layoutPropertyChanged(VisibilityProperty);
    if (!visible && mDevice && mDevice->touchOwnership())
        mDevice->touchOwnership()->cancelTouchEvents(this);
    if (visible)
        shown();
    else
        hidden();
    visibilityChanged(this);
}

void DisplayView::visibilityChanged(DisplayView* view)
{
    const DisplayViewList::List children = mChildren.list();
    for (DisplayView* child : children)
        child->visibilityChanged(view);
}

void DisplayView::enable(bool on, bool recursive)
{
    if (on != mEnabled) {
        mEnabled = on;
        update();
        if (on) {
            enabled();
            emit enabled(this);
        } else {
            disabled();
            emit disabled(this);
        }
    }
    if (recursive) {
        const DisplayViewList::List children = mChildren.list();
        for (DisplayView* child : children)
            child->enable(on, true);
    }
}

void DisplayView::disable(bool on, bool recursive)
{
    enable(!on, recursive);
}

void DisplayView::reveal(bool force)
{
    const QRect area = drawingAreaRect();
    if (mParentView)
        mParentView->update(this, mapRectToParent(area), force);
    else
        update(this, area, force);
}

// Invalidation

QRect DisplayView::mapRectToParent(const QRect& rect) const
{
    // Damage must cover every pixel that the turned layer touches, even in part.
    const QRect mapped = mLayerTransformed ? gfx::RenderItem::mappedBounds(mExtras->mTransform, rect) : rect;
    return mapped.translated(positionInParent());
}

void DisplayView::revealInDevice(const QRect& rect)
{
    QRect mapped = rect;
    DisplayView* view = this;
    for (; view->mParentView; view = view->mParentView)
        mapped = view->mapRectToParent(mapped);
    if (view == mDevice)
        mDevice->reveal(mapped);
}

void DisplayView::update()
{
    update(this, drawingAreaRect(), false);
}

void DisplayView::update(const QRect& rect)
{
    update(this, rect, false);
}

void DisplayView::update(const QRegion& region)
{
    for (const QRect& rect : region)
        update(this, rect, false);
}

void DisplayView::update(DisplayView* source, const QRect& rect, bool force)
{
    Q_UNUSED(source);
    if (mUpdateFlags & NoUpdates)
        return;
    if (!mDevice && !force && !isVisible(nullptr))
        return;
    if (rect.isEmpty())
        return;
    const QRect clipped = rect & drawingAreaRect();
    if (clipped.isEmpty())
        return;
    emit updated(this, clipped);
    if (layer()) {
        // The repaint stays in this layer's buffer; on screen only the composited
        // area changes.
        layer()->update(clipped);
        if ((mCompositingFlags & CompositeIntoParentLayer) && !(mParentView && mParentView->layer()))
            viewAssert("parentView()->layer()",
                       QStringLiteral("View doesn't have parent to composite View: %1"), __LINE__);
        revealInDevice(clipped);
        return;
    }
    if (mParentView)
        mParentView->update(this, mapRectToParent(clipped), force);
}

void DisplayView::markDirtyRectsForRendering(bool recursive, bool force)
{
    if (layer())
        layer()->update(drawingAreaRect());
    update(this, drawingAreaRect(), force);
    if (recursive) {
        for (DisplayView* child : mChildren.list())
            child->markDirtyRectsForRendering(true, force);
    }
}

void DisplayView::updateDisplayArea()
{
    update();
    displayAreaChanged();
    emit displayAreaChanged(this);
}

// Painting

void DisplayView::drawViewAndChildren(QPainter& painter)
{
    const qreal opacity = painter.opacity();
    painter.setOpacity(mAlpha);
    const bool clipping = painter.hasClipping();
    const QRegion clip = painter.clipRegion();
    const QRect area = drawingLayerRect();
    painter.setClipRect(area, clipping ? Qt::IntersectClip : Qt::ReplaceClip);
    draw(painter);
    drawChildren(painter, area, QPoint());
    painter.setClipRegion(clip);
    painter.setClipping(clipping);
    painter.setOpacity(opacity);
}

void DisplayView::drawChildren(QPainter& painter, QRect rect, QPoint offset)
{
    if (mChildren.isEmpty())
        return;
    const QRect area = rect & drawingLayerRect().translated(offset);
    if (area.isEmpty())
        return;
    painter.save();
    // A copy, so that children added or removed while drawing leave this walk alone.
    const DisplayViewList::List children = mChildren.list();
    for (DisplayView* child : children)
        drawChild(child, painter, area, offset);
    painter.restore();
}

void DisplayView::drawChild(DisplayView* child, QPainter& painter, QRect rect, QPoint offset)
{
    if (!child->mVisible && !(child->mDrawingFlags & DrawWhenHidden))
        return;
    // A child with a layer of its own is rendered into it and composited.
    if (child->layer())
        return;
    const QPoint origin = offset + child->positionInParent();
    const QRect area = rect & child->drawingLayerRect().translated(origin);
    if (area.isEmpty())
        return;
    DrawingContext context(painter);
    const qreal opacity = painter.opacity();
    context.saveTransform();
    context.translate(origin);
    context.setClipRect(area.translated(-origin));
    painter.setOpacity(opacity * child->mAlpha);
    if (child->ext().mShadow)
        child->ext().mShadow->draw(painter, child->drawingAreaRect());
    if (!(child->mDrawingFlags & NoDrawing))
        child->draw(painter);
    painter.setOpacity(opacity);
    if (DisplayDevice::debugPadding)
        child->drawDebugPadding(painter);
    context.restoreTransform();

    painter.setOpacity(opacity * child->mAlpha);
    child->drawChildren(painter, area, origin);
    painter.setOpacity(opacity);

    // The transform saved above is still the one to return to.
    context.translate(origin);
    child->drawOverlay(painter);
    if (child->ext().mOverlay)
        child->ext().mOverlay->draw(child, painter);
    context.restoreTransform();

    if (DisplayDevice::debugUpdates) {
        painter.setClipRect(area, Qt::ReplaceClip);
        painter.fillRect(area, QColor(std::rand() % 256, std::rand() % 256, std::rand() % 256, 64));
    }
}

void DisplayView::drawDebugPadding(QPainter& painter)
{
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QColor(255, 0, 255));
    painter.drawRect(QRect(0, 0, mWidth, mHeight).adjusted(0, 0, -1, -1));
    const Padding& t = ext().mTouchPadding;
    if (t != Padding()) {
        painter.setPen(QColor(0, 255, 255));
        painter.drawRect(
            QRect(-t.left, -t.top, mWidth + t.left + t.right - 1, mHeight + t.top + t.bottom - 1));
    }
    painter.restore();
}

void DisplayView::draw(QPainter& painter)
{
    const QRect area(0, 0, mWidth, mHeight);
    if (ext().mBackgroundColor.isValid() && ext().mBackgroundOpacity > 0) {
        QColor color = ext().mBackgroundColor.color();
        color.setAlphaF(color.alphaF() * ext().mBackgroundOpacity);
        DrawingContext(painter).fillRect(area, color);
    }
    if (!ext().mBackgroundImage.isNull()) {
        DisplayImage image = ext().mBackgroundImage;
        if (!ext().mStretchBackground)
            image.setFill(DisplayImage::Center);
        const qreal opacity = painter.opacity();
        painter.setOpacity(opacity * ext().mBackgroundOpacity);
        image.draw(painter, area);
        painter.setOpacity(opacity);
    }
}

void DisplayView::drawOverlay(QPainter&) {}

void DisplayView::drawText(QPainter& painter, const QRect& rect, int flags, const QString& text,
                           const QColor& color)
{
    painter.save();
    painter.setPen(color);
    painter.drawText(rect, flags, text);
    painter.restore();
}

// Hit testing

bool DisplayView::acceptsTouches() const
{
    return !(mTouchFlags & IgnoreTouches) && (mEnabled || (mTouchFlags & TouchWhileDisabled));
}

bool DisplayView::touchable(int)
{
    return acceptsTouches() && isVisible(nullptr);
}

DisplayView* DisplayView::viewAtPoint(QPoint point)
{
    const Padding& pad = ext().mTouchPadding;
    QRect area(-pad.left, -pad.top, mWidth + pad.left + pad.right, mHeight + pad.top + pad.bottom);
    if (mLayerTransformed)
        area = mExtras->mTransform.mapRect(area);
    if (!area.contains(point))
        return nullptr;
    if ((mTouchFlags & KeepTouches) && mTouchCount > 0 && mDevice && mDevice->touchOwnership() &&
        mDevice->touchOwnership()->viewHasTouch(this, true))
        return this;
    const DisplayViewList::List& children = mChildren.list();
    for (auto iter = children.constEnd(); iter != children.constBegin();) {
        DisplayView* child = *--iter;
        if (!child->mVisible || !(child->mEnabled || (child->mTouchFlags & TouchWhileDisabled)))
            continue;
        DisplayView* hit = child->viewAtPoint(point - child->positionInParent());
        if (!hit)
            continue;
        while (hit && !hit->acceptsTouches())
            hit = hit->parentView();
        return hit;
    }
    return acceptsTouches() ? this : nullptr;
}

// Behaviour flags

namespace {
// The touch flags: behaviours in bits 0-3, gestures in 4-7, required gestures in
// 8-11, then the ignored drag directions.
constexpr int kGestureShift = 4;
constexpr int kRequiredGestureShift = 8;
constexpr quint32 kIgnoreHorizontalDrag = 1u << 12;
constexpr quint32 kIgnoreVerticalDrag = 1u << 13;

template <typename Flags> void setFlag(Flags& flags, quint32 bits, bool on)
{
    flags = on ? Flags(flags | bits) : Flags(flags & ~bits);
}
} // namespace

void DisplayView::setTouchBehavior(TouchBehavior behavior, bool on)
{
    setFlag(mTouchFlags, quint32(behavior), on);
}

void DisplayView::setTouchGesture(TouchGesture gesture, bool on)
{
    setFlag(mTouchFlags, quint32(gesture) << kGestureShift, on);
}

void DisplayView::setRequiredTouchGesture(TouchGesture gesture, bool on)
{
    setFlag(mTouchFlags, quint32(gesture) << kRequiredGestureShift, on);
}

void DisplayView::setIgnoreDragGestures(bool horizontal, bool vertical)
{
    setFlag(mTouchFlags, kIgnoreHorizontalDrag, horizontal);
    setFlag(mTouchFlags, kIgnoreVerticalDrag, vertical);
}

bool DisplayView::hasTouchBehavior(TouchBehavior behavior) const
{
    return mTouchFlags & quint32(behavior);
}

bool DisplayView::hasTouchGesture(TouchGesture gesture) const
{
    return mTouchFlags & (quint32(gesture) << kGestureShift);
}

bool DisplayView::requiresTouchGesture(TouchGesture gesture) const
{
    return mTouchFlags & (quint32(gesture) << kRequiredGestureShift);
}

void DisplayView::setUpdateBehavior(UpdateBehavior behavior, bool on)
{
    setFlag(mUpdateFlags, quint32(behavior), on);
}

void DisplayView::setDrawingBehavior(DrawingBehavior behavior, bool on)
{
    setFlag(mDrawingFlags, quint32(behavior), on);
    update();
}

void DisplayView::setCompositingBehavior(CompositingBehavior behavior, bool on)
{
    setFlag(mCompositingFlags, quint32(behavior), on);
}

void DisplayView::setTouchPadding(const Padding& padding)
{
    extras().mTouchPadding = padding;
}

Padding DisplayView::touchPadding() const
{
    return ext().mTouchPadding;
}

void DisplayView::setDragGestureDelegate(DisplayView* delegate)
{
    extras().mDragGestureDelegate = delegate;
}

DisplayView* DisplayView::dragGestureDelegate(int) const
{
    return ext().mDragGestureDelegate;
}

// Focus and touch

void DisplayView::getKeyFocus()
{
    if (mDevice)
        mDevice->setKeyFocus(this);
}

bool DisplayView::hasKeyFocus()
{
    return mDevice && mDevice->keyFocus() == this;
}

void DisplayView::resignKeyFocus(bool toParent)
{
    if (!hasKeyFocus())
        return;
    if (toParent) {
        for (DisplayView* view = mParentView; view; view = view->mParentView) {
            if (view->mCanHaveKeyFocus) {
                mDevice->setKeyFocus(view);
                return;
            }
        }
    }
    mDevice->clearKeyFocus();
}

void DisplayView::getTouchFocus()
{
    if (mDevice)
        mDevice->setTouchFocus(this);
}

bool DisplayView::hasTouchFocus()
{
    return mDevice && mDevice->touchFocus() == this;
}

void DisplayView::resignTouchFocus()
{
    if (hasTouchFocus())
        mDevice->clearTouchFocus();
}

void DisplayView::transferTouch(int touch, DisplayView* to)
{
    if (mDevice && mDevice->touchOwnership())
        mDevice->touchOwnership()->transferTouch(touch, to);
}

void DisplayView::incrementTouchCount()
{
    ++mTouchCount;
}

void DisplayView::decrementTouchCount()
{
    if (!ORBIS_ASSERT(mTouchCount > 0, QStringLiteral("mTouchCount > 0")))
        return;
    --mTouchCount;
}

void DisplayView::setCanHaveKeyFocus(bool can, bool recursive)
{
    mCanHaveKeyFocus = can;
    if (!can && hasKeyFocus())
        mDevice->clearKeyFocus();
    if (recursive) {
        for (DisplayView* child : mChildren.list())
            child->setCanHaveKeyFocus(can, true);
    }
}

void DisplayView::setCanClearKeyFocus(bool can, bool recursive)
{
    mCanClearKeyFocus = can;
    if (recursive) {
        for (DisplayView* child : mChildren.list())
            child->setCanClearKeyFocus(can, true);
    }
}

bool DisplayView::shouldClearTouchFocus(DisplayView* touched)
{
    return touched != this && !(touched && touched->isChildOf(this));
}

// Value binding

void DisplayView::setValueSource(DataValue& value)
{
    if (qstrcmp(value.metaObject()->className(), "StringDataValue") == 0) {
        setValueSource(static_cast<StringDataValue&>(value));
        return;
    }
    clearValueSource();
    extras().mValueSource = &value;
    connect(&value, "2valueChanged(DataValue*)", this, "1sourceValueChanged(DataValue*)");
}

void DisplayView::setValueSource(StringDataValue& value)
{
    clearValueSource();
    extras().mValueSource = &value;
    connect(&value, "2stringValueChanged(StringDataValue*)", this, "1sourceValueChanged(StringDataValue*)");
}

void DisplayView::clearValueSource()
{
    DataValue* source = valueSource();
    if (!source)
        return;
    disconnect(source, "2valueChanged(DataValue*)", this, "1sourceValueChanged(DataValue*)");
    if (qobject_cast<StringDataValue*>(source))
        disconnect(source, "2stringValueChanged(StringDataValue*)", this,
                   "1sourceValueChanged(StringDataValue*)");
    mExtras->mValueSource = nullptr;
}

void DisplayView::sourceValueChanged(DataValue* value)
{
    double number;
    {
        DataValue::ConditionalLocker lock(value);
        number = value->value().toReal();
    }
    valueChanged(true, number);
}

void DisplayView::sourceValueChanged(StringDataValue* value)
{
    QString text;
    {
        DataValue::ConditionalLocker lock(value);
        text = value->stringValue();
    }
    valueChanged(true, text);
}

void DisplayView::valueChanged(bool, double)
{
    ORBIS_FAIL(QStringLiteral("did setValueSource but is not listening for changes"));
}

void DisplayView::valueChanged(bool, QString)
{
    ORBIS_FAIL(QStringLiteral("did setValueSource but is not listening for changes"));
}

double DisplayView::currentValue()
{
    DataValue* source = valueSource();
    if (!source)
        return 0;
    DataValue::ConditionalLocker lock(source);
    return source->toReal();
}

void DisplayView::setCurrentValue(double value)
{
    if (!ORBIS_ASSERT(valueSource(), QStringLiteral("No value source")))
        return;
    DataValue* source = valueSource();
    DataValue::EventLocker lock(source);
    source->setValue(value);
}

void DisplayView::addToValueSource(double delta)
{
    if (!ORBIS_ASSERT(valueSource(), QStringLiteral("No value source")))
        return;
    DataValue* source = valueSource();
    DataValue::EventLocker lock(source);
    source->addValue(delta);
}

bool DisplayView::dvConnect(DataValue& value, const char* slot, bool callNow)
{
    if (!connect(&value, "2valueChanged(DataValue*)", this, slot))
        return false;
    if (callNow && slot && *slot) {
        const QByteArray signature = QMetaObject::normalizedSignature(slot + 1);
        const int index = metaObject()->indexOfMethod(signature);
        if (index >= 0)
            metaObject()->method(index).invoke(this, Qt::DirectConnection, Q_ARG(DataValue*, &value));
    }
    return true;
}

// Diagnostics

QString DisplayView::sanitizeViewName(QString name)
{
    return name.trimmed().replace(QLatin1Char('/'), QLatin1Char('_'));
}

QString DisplayView::viewName()
{
    return mViewName.isEmpty() ? QString::fromLatin1(metaObject()->className()) : mViewName;
}

void DisplayView::setViewName(QString name)
{
    mViewName = sharedViewName(sanitizeViewName(name));
}

QString DisplayView::viewPath()
{
    QStringList names;
    for (DisplayView* view = this; view; view = view->mParentView)
        names.prepend(view->viewName());
    return names.join(QLatin1Char('/'));
}

QVariantMap DisplayView::toVariantMap()
{
    QVariantMap map;
    map.insert(QStringLiteral("name"), viewName());
    map.insert(QStringLiteral("class"), QString::fromLatin1(metaObject()->className()));
    map.insert(QStringLiteral("x"), mX);
    map.insert(QStringLiteral("y"), mY);
    map.insert(QStringLiteral("width"), mWidth);
    map.insert(QStringLiteral("height"), mHeight);
    map.insert(QStringLiteral("alpha"), mAlpha);
    map.insert(QStringLiteral("visible"), mVisible);
    map.insert(QStringLiteral("enabled"), mEnabled);
    map.insert(QStringLiteral("layer"), mUseLayer);
    map.insert(QStringLiteral("TouchCount"), mTouchCount);
    QVariantList children;
    for (DisplayView* child : validChildViews())
        children.append(child->toVariantMap());
    map.insert(QStringLiteral("children"), children);
    return map;
}

QList<DisplayView*> DisplayView::validChildViews()
{
    QList<DisplayView*> views;
    for (DisplayView* child : mChildren.list()) {
        if (!child->mDestroying)
            views.append(child);
    }
    return views;
}

DisplayView* DisplayView::parentView()
{
    return mParentView;
}

// Default reactions: nothing to do in the base view.

QRectF DisplayView::boundingRect(float margin)
{
    return QRectF(rect()).adjusted(-margin, -margin, margin, margin);
}

float DisplayView::childViewBrightness(DisplayView*)
{
    return ext().mBrightness;
}

QPointF DisplayView::visualCenter() const
{
    return mapRectToParent(QRect(0, 0, mWidth, mHeight)).center();
}

int DisplayView::shader() const
{
    return 0;
}

bool DisplayView::isFixedBrightness() const
{
    return mFixedBrightness;
}

void DisplayView::tick() {}
void DisplayView::tick1s() {}
void DisplayView::enabled() {}
void DisplayView::disabled() {}
void DisplayView::shown() {}
void DisplayView::hidden() {}
void DisplayView::moved() {}
void DisplayView::resized() {}
void DisplayView::reskinned()
{
    update();
}
void DisplayView::displayAreaChanged() {}
void DisplayView::touched(int, QPoint) {}
void DisplayView::released(int) {}
void DisplayView::tapped(int, QPoint) {}
void DisplayView::pinched(int, double) {}
void DisplayView::rotated(int, double) {}
void DisplayView::touchCanceled(int) {}
void DisplayView::scrolled(int, QSize) {}
void DisplayView::wheeled(QPoint, int) {}
void DisplayView::dragged(int, QSize) {}
void DisplayView::doKeyPress(QKeyEvent*) {}
void DisplayView::doKeyRelease(QKeyEvent*) {}
void DisplayView::gotKeyFocus() {}
void DisplayView::lostKeyFocus() {}
void DisplayView::gotTouchFocus() {}
void DisplayView::lostTouchFocus() {}
void DisplayView::animationStarted() {}
void DisplayView::animationComplete() {}
void DisplayView::childAdded(DisplayView*) {}
void DisplayView::childRemoved(DisplayView*) {}
void DisplayView::childOrderChanged(DisplayView*) {}
void DisplayView::childrenCleared() {}
