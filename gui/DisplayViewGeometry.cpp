// DisplayView: geometry, animated setters, layers and background.
#include "DisplayDevice.h"
#include "DisplayView.h"
#include "DisplayViewAnimation.h"
#include "DisplayViewEffect.h"
#include "DisplayViewExtras.h"
#include "LayoutAction.h"
#include "Logger.h"

#include <cmath>

static const char* const kLogSource = "../../../gui/DisplayView";

using Anim = DisplayViewAnimation;

namespace {
bool isAnimated(double duration, double delay)
{
    return duration > 0 || delay > 0;
}
} // namespace

// Geometry applied at once

void DisplayView::applyPosition(double x, double y)
{
    const QPoint before = position();
    if (QPoint(int(x), int(y)) == before) {
        mX = x;
        mY = y;
        return;
    }
    reveal(false);
    mX = x;
    mY = y;
    reveal(false);
    place();
}

void DisplayView::applySize(int width, int height)
{
    width = std::max(0, width);
    height = std::max(0, height);
    if (width == mWidth && height == mHeight)
        return;
    reveal(false);
    mWidth = width;
    mHeight = height;
    if (layer()) {
        layer()->setSize(QSize(width, height));
        layer()->update(drawingAreaRect());
    }
    reveal(false);
    place();
    const DisplayViewList::List children = mChildren.list();
    for (DisplayView* child : children) {
        if (child->mExtras && child->mExtras->mAutoResize)
            child->applyAutoResize();
    }
}

void DisplayView::applyAlpha(double alpha)
{
    if (alpha == mAlpha)
        return;
    mAlpha = alpha;
    reveal(false);
}

void DisplayView::applyBrightness(float brightness)
{
    if (brightness == ext().mBrightness)
        return;
    extras().mBrightness = brightness;
    update();
}

void DisplayView::applyScale(double scale)
{
    if (scale == ext().mScale)
        return;
    extras().mScale = float(scale);
    updateTransform();
}

void DisplayView::applyAngle(double angle)
{
    if (angle == ext().mAngle)
        return;
    extras().mAngle = float(angle);
    updateTransform();
}

void DisplayView::place()
{
    ++sPlaceCount;
    const QRect now = rect();
    const bool movedNow = now.topLeft() != mPlacedRect.topLeft();
    const bool resizedNow = now.size() != mPlacedRect.size();
    mPlacedRect = now;
    if (movedNow) {
        if (mInMoved) {
            viewAssert("!mInMoved", QStringLiteral("Recursive moved() detected View: %1"), __LINE__);
        } else {
            mInMoved = true;
            moved();
            emit moved(this);
            mInMoved = false;
        }
    }
    if (resizedNow) {
        if (mInResized) {
            viewAssert("!mInResized", QStringLiteral("Recursive resized() detected View: %1"), __LINE__);
        } else {
            mInResized = true;
            resized();
            emit resized(this);
            mInResized = false;
        }
    }
}

// Animated setters

DisplayViewAnimation* DisplayView::animation(bool create)
{
    return mDevice ? mDevice->getViewAnimation(this, create) : nullptr;
}

double DisplayView::pendingValue(int property)
{
    Anim* running = animation(false);
    if (running && running->isAnimating(Anim::Property(property)))
        return running->target(Anim::Property(property));
    switch (property) {
    case Anim::X:
        return mX;
    case Anim::Y:
        return mY;
    case Anim::Width:
        return mWidth;
    case Anim::Height:
        return mHeight;
    case Anim::Brightness:
        return ext().mBrightness;
    default:
        return 0;
    }
}

bool DisplayView::checkGeometryChange(bool animated, const char* circularMessage, int line)
{
    if (mLayoutInProgress)
        return viewAssert("!mLayoutInProgress", QString::fromLatin1(circularMessage), line);
    if (animated && layoutImpl() && !LayoutAction::isAnimatorActive())
        return viewAssert("LayoutAction::isAnimatorActive()",
                          QStringLiteral("Starting animation outside of layout animator View: %1"), line);
    return true;
}

bool DisplayView::animateOrStop(int first, double firstTarget, int second, double secondTarget,
                                double duration, EaseType ease, double delay)
{
    if (isAnimated(duration, delay)) {
        if (Anim* running = animation(true)) {
            running->animate(Anim::Property(first), firstTarget, duration, ease, delay);
            if (second >= 0)
                running->animate(Anim::Property(second), secondTarget, duration, ease, delay);
            return true;
        }
        // A view being destroyed gets no animation and no change.
        if (mDestroying)
            return true;
    } else if (Anim* running = animation(false)) {
        running->stop(Anim::Property(first));
        if (second >= 0)
            running->stop(Anim::Property(second));
    }
    return false;
}

void DisplayView::moveTo(int x, int y, double duration, EaseType ease, double delay)
{
    if (!ORBIS_ASSERT(std::abs(x) <= kMaxCoordinate && std::abs(y) <= kMaxCoordinate,
                      QStringLiteral("moveTo out of bounds")))
        return;
    if (!checkGeometryChange(isAnimated(duration, delay), "Circular layout in moveTo View: %1", __LINE__))
        return;
    if (animateOrStop(Anim::X, x, Anim::Y, y, duration, ease, delay))
        return;
    // A place given by hand outlasts the next layout pass.
    if (layoutImpl() && !LayoutAction::isAnimatorActive())
        layoutImpl()->setTopLeft(QPointF(x, y));
    applyPosition(x, y);
}

void DisplayView::moveLeft(int x, double duration, EaseType ease, double delay)
{
    moveTo(x, int(pendingValue(Anim::Y)), duration, ease, delay);
}

void DisplayView::moveTop(int y, double duration, EaseType ease, double delay)
{
    moveTo(int(pendingValue(Anim::X)), y, duration, ease, delay);
}

void DisplayView::moveRight(int right, double duration, EaseType ease, double delay)
{
    moveLeft(right - int(pendingValue(Anim::Width)), duration, ease, delay);
}

void DisplayView::moveBottom(int bottom, double duration, EaseType ease, double delay)
{
    moveTop(bottom - int(pendingValue(Anim::Height)), duration, ease, delay);
}

void DisplayView::moveHorizontalCenter(int x, double duration, EaseType ease, double delay)
{
    moveLeft(x - int(pendingValue(Anim::Width)) / 2, duration, ease, delay);
}

void DisplayView::moveVerticalCenter(int y, double duration, EaseType ease, double delay)
{
    moveTop(y - int(pendingValue(Anim::Height)) / 2, duration, ease, delay);
}

void DisplayView::moveCenter(int x, int y, double duration, EaseType ease, double delay)
{
    moveTo(x - int(pendingValue(Anim::Width)) / 2, y - int(pendingValue(Anim::Height)) / 2, duration, ease,
           delay);
}

void DisplayView::moveCenter(QPoint center, double duration, EaseType ease, double delay)
{
    moveCenter(center.x(), center.y(), duration, ease, delay);
}

QRect DisplayView::visualOffsetRect() const
{
    // Where the transformed view lies relative to its untransformed position.
    const QRect local(0, 0, mWidth, mHeight);
    return mLayerTransformed ? mExtras->mTransform.mapRect(local) : local;
}

void DisplayView::moveVisualTo(int x, int y, double duration, EaseType ease, double delay)
{
    const QRect visual = visualOffsetRect();
    moveTo(x - visual.x(), y - visual.y(), duration, ease, delay);
}

void DisplayView::moveVisualLeft(int x, double duration, EaseType ease, double delay)
{
    moveLeft(x - visualOffsetRect().x(), duration, ease, delay);
}

void DisplayView::moveVisualTop(int y, double duration, EaseType ease, double delay)
{
    moveTop(y - visualOffsetRect().y(), duration, ease, delay);
}

void DisplayView::moveVisualRight(int right, double duration, EaseType ease, double delay)
{
    const QRect visual = visualOffsetRect();
    moveLeft(right - visual.x() - visual.width(), duration, ease, delay);
}

void DisplayView::moveVisualBottom(int bottom, double duration, EaseType ease, double delay)
{
    const QRect visual = visualOffsetRect();
    moveTop(bottom - visual.y() - visual.height(), duration, ease, delay);
}

void DisplayView::moveVisualCenter(QPoint center, double duration, EaseType ease, double delay)
{
    const QRect visual = visualOffsetRect();
    moveTo(center.x() - visual.x() - visual.width() / 2, center.y() - visual.y() - visual.height() / 2,
           duration, ease, delay);
}

void DisplayView::resizeTo(int width, int height, double duration, EaseType ease, double delay)
{
    if (!checkGeometryChange(isAnimated(duration, delay), "Circular layout in resizeTo View: %1", __LINE__))
        return;
    if (animateOrStop(Anim::Width, width, Anim::Height, height, duration, ease, delay))
        return;
    // So does a size given by hand, in the dimensions it changes (NaN: left as it is).
    if (layoutImpl() && !LayoutAction::isAnimatorActive())
        layoutImpl()->setSize(
            QSizeF(width != mWidth ? width : qQNaN(), height != mHeight ? height : qQNaN()));
    applySize(width, height);
}

void DisplayView::resizeVisualTo(int width, int height, double duration, EaseType ease, double delay)
{
    const double scale = ext().mScale != 0 ? ext().mScale : 1.0;
    resizeTo(int(std::lround(width / scale)), int(std::lround(height / scale)), duration, ease, delay);
}

void DisplayView::setWidth(int width, double duration, EaseType ease, double delay)
{
    resizeTo(width, int(pendingValue(Anim::Height)), duration, ease, delay);
}

void DisplayView::setVisualWidth(int width, double duration, EaseType ease, double delay)
{
    const double scale = ext().mScale != 0 ? ext().mScale : 1.0;
    setWidth(int(std::lround(width / scale)), duration, ease, delay);
}

void DisplayView::setHeight(int height, double duration, EaseType ease, double delay)
{
    resizeTo(int(pendingValue(Anim::Width)), height, duration, ease, delay);
}

void DisplayView::setVisualHeight(int height, double duration, EaseType ease, double delay)
{
    const double scale = ext().mScale != 0 ? ext().mScale : 1.0;
    setHeight(int(std::lround(height / scale)), duration, ease, delay);
}

void DisplayView::setAlpha(float alpha, double duration, EaseType ease, bool showHide, double delay,
                           bool fromCurrent)
{
    alpha = std::clamp(alpha, 0.0f, 1.0f);
    if (!fromCurrent)
        applyAlpha(alpha > 0 ? 0.0 : 1.0);
    if (showHide && alpha > 0 && !mVisible)
        show(true);
    if (animateOrStop(Anim::Alpha, alpha, -1, 0, duration, ease, delay)) {
        if (Anim* running = animation(false))
            running->hideWhenDone = showHide && alpha == 0;
        return;
    }
    applyAlpha(alpha);
    if (showHide && alpha == 0)
        show(false);
}

void DisplayView::fadeIn(double duration, EaseType ease, double delay)
{
    setAlpha(1.0f, duration, ease, true, delay, true);
}

void DisplayView::fadeOut(double duration, EaseType ease, double delay)
{
    setAlpha(0.0f, duration, ease, true, delay, true);
}

void DisplayView::setScale(float scale, double duration, EaseType ease, double delay)
{
    setScale(scale, QPointF(mWidth / 2.0, mHeight / 2.0), duration, ease, delay);
}

void DisplayView::setScale(float scale, QPointF pivot, double duration, EaseType ease, double delay)
{
    extras().mPivot = pivot;
    if (!animateOrStop(Anim::Scale, scale, -1, 0, duration, ease, delay))
        applyScale(scale);
}

void DisplayView::setAngle(float angle, double duration, EaseType ease, double delay)
{
    setAngle(angle, QPointF(mWidth / 2.0, mHeight / 2.0), QVector3D(0, 0, 1), duration, ease, delay);
}

void DisplayView::setAngle(float angle, QPointF pivot, QVector3D axis, double duration, EaseType ease,
                           double delay)
{
    extras().mPivot = pivot;
    extras().mAxis = axis;
    if (!animateOrStop(Anim::Angle, angle, -1, 0, duration, ease, delay))
        applyAngle(angle);
}

void DisplayView::setBrightness(float brightness, double duration, EaseType ease, double delay)
{
    if (!animateOrStop(Anim::Brightness, brightness, -1, 0, duration, ease, delay))
        applyBrightness(brightness);
}

void DisplayView::flash(DisplayView* view, double duration)
{
    DisplayView* target = view ? view : this;
    const float base = float(target->pendingValue(Anim::Brightness));
    Anim* running = target->animation(true);
    if (!running)
        return;
    // Up to twice as bright and back, each half of the time.
    running->animate(Anim::Brightness, base * 2.0f, duration / 2, InterpolatedValue::EaseOutQuad, 0);
    running->queue(Anim::Brightness, base, duration / 2, InterpolatedValue::EaseInQuad);
}

void DisplayView::deleteAfterAnimation()
{
    if (animation(false)) {
        mDeleteAfterAnimation = true;
        return;
    }
    delete this;
}

void DisplayView::autoResizeToParent(const QRectF& relative)
{
    Extras& e = extras();
    e.mAutoResize = Extras::AutoRelative;
    e.mAutoRelative = relative;
    applyAutoResize();
}

void DisplayView::autoResizeWidthToParent(int left, int right)
{
    Extras& e = extras();
    e.mAutoResize = (e.mAutoResize & ~Extras::AutoRelative) | Extras::AutoWidth;
    e.mAutoMargins.left = left;
    e.mAutoMargins.right = right;
    applyAutoResize();
}

void DisplayView::autoResizeHeightToParent(int top, int bottom)
{
    Extras& e = extras();
    e.mAutoResize = (e.mAutoResize & ~Extras::AutoRelative) | Extras::AutoHeight;
    e.mAutoMargins.top = top;
    e.mAutoMargins.bottom = bottom;
    applyAutoResize();
}

void DisplayView::autoResizeToParentWithMargins(const Padding& margins)
{
    autoResizeWidthToParent(margins.left, margins.right);
    autoResizeHeightToParent(margins.top, margins.bottom);
}

void DisplayView::applyAutoResize()
{
    const Extras& e = ext();
    if (!mParentView || !e.mAutoResize)
        return;
    const int w = mParentView->mWidth;
    const int h = mParentView->mHeight;
    if (e.mAutoResize & Extras::AutoRelative) {
        const QRectF& r = e.mAutoRelative;
        moveTo(int(r.x() * w), int(r.y() * h));
        resizeTo(int(r.width() * w), int(r.height() * h));
        return;
    }
    const Padding m = e.mAutoMargins;
    if (e.mAutoResize & Extras::AutoWidth) {
        moveLeft(m.left);
        setWidth(w - m.left - m.right);
    }
    if (e.mAutoResize & Extras::AutoHeight) {
        moveTop(m.top);
        setHeight(h - m.top - m.bottom);
    }
}

// Rectangles

QRect DisplayView::relativePositionRect(DisplayView* ancestor) const
{
    QRect result(positionInParent(), size());
    for (DisplayView* view = mParentView; view && view != ancestor; view = view->mParentView)
        result = view->mapRectToParent(result);
    return result;
}

QPoint DisplayView::contentOffset() const
{
    return ext().mContentOffset;
}

void DisplayView::setContentOffset(const QPoint& offset)
{
    if (offset != ext().mContentOffset)
        extras().mContentOffset = offset;
}

QPoint DisplayView::positionInParent() const
{
    const QPoint at = position();
    return mParentView ? at - mParentView->contentOffset() : at;
}

QRect DisplayView::drawingRect() const
{
    return QRect(0, 0, mWidth, mHeight);
}

QRect DisplayView::drawingAreaRect() const
{
    if (!ext().mShadow)
        return drawingRect();
    const Padding& p = ext().mShadowPadding;
    return drawingRect().adjusted(-p.left, -p.top, p.right, p.bottom);
}

QRect DisplayView::drawingLayerRect() const
{
    return ext().mClip.isNull() ? drawingAreaRect() : drawingAreaRect() & ext().mClip;
}

QRect DisplayView::transformedOpaqueRect() const
{
    return ext().mOpaque.isNull() ? QRect() : mapRectToParent(ext().mOpaque);
}

void DisplayView::setClip(const QRect& clip)
{
    reveal(false);
    extras().mClip = clip;
    reveal(false);
}

void DisplayView::setOpaque(const QRect& opaque)
{
    extras().mOpaque = opaque;
}

// Layers

void DisplayView::setUseLayer(bool useLayer, bool cached)
{
    mCachedLayer = cached;
    if (useLayer == mUseLayer)
        return;
    mUseLayer = useLayer;
    if (useLayer) {
        extras().mLayer = std::make_unique<ViewBuffer>(this);
        layer()->setSize(size());
        initLayer();
    } else {
        mExtras->mLayer.reset();
    }
    updateTransform();
    reveal(true);
}

void DisplayView::initLayer()
{
    if (layer())
        layer()->update(drawingAreaRect());
}

void DisplayView::setUseCachedLayer(bool cached)
{
    mCachedLayer = cached;
}

void DisplayView::initCachedLayer(const QSize& size)
{
    if (!ORBIS_ASSERT(layer(), QStringLiteral("Cannot cache a view that is not a layer")))
        return;
    mCachedLayer = true;
    layer()->setSize(size);
    layer()->update(QRect(QPoint(), size));
}

void DisplayView::setLayer(ViewBuffer* layer)
{
    extras().mLayer.reset(layer);
    mUseLayer = layer != nullptr;
    updateTransform();
    reveal(true);
}

void DisplayView::setLayerMask(const DisplayImage& mask)
{
    if (mask == ext().mLayerMask)
        return;
    extras().mLayerMask = mask;
    markDirtyRectsForRendering(false, true);
}

const DisplayImage& DisplayView::layerMask() const
{
    return ext().mLayerMask;
}

void DisplayView::setLayerBackingType(ViewBuffer::BackingType type)
{
    if (!ORBIS_ASSERT(layer(), QStringLiteral("Backing type set on a view that is not a layer")))
        return;
    layer()->setBackingType(type);
}

void DisplayView::setLayerTransform(const QMatrix4x4& transform)
{
    if (!layer()) {
        viewAssert("mLayer", QStringLiteral("Transform ignored on view since it's not a layer View: %1"),
                   __LINE__);
        return;
    }
    recomposite();
    mLayerTransformed = !transform.isIdentity();
    if (mLayerTransformed)
        extras().mTransform = transform;
    recomposite();
}

void DisplayView::recomposite()
{
    // A layer nested in another one has its pixels there: that layer must be redrawn.
    // Otherwise the layers beneath still hold their content and only the screen changes.
    if (nestingTarget())
        reveal(true);
    else if (isVisible(nullptr))
        revealInDevice(drawingAreaRect());
}

DisplayView* DisplayView::nestingTarget() const
{
    if ((mCompositingFlags & CompositeIntoParentLayer) && mParentView && mParentView->layer())
        return mParentView;
    for (DisplayView* ancestor = mParentView; ancestor; ancestor = ancestor->mParentView) {
        if (ancestor->layer() && ancestor->mCompositeNestedLayers)
            return ancestor;
    }
    return nullptr;
}

void DisplayView::updateTransform()
{
    if (!layer()) {
        mLayerTransformed = false;
        return;
    }
    QMatrix4x4 transform;
    const Extras& e = ext();
    if (e.mScale != 1.0f || e.mAngle != 0.0f) {
        transform.translate(float(e.mPivot.x()), float(e.mPivot.y()));
        if (e.mAngle != 0.0f)
            transform.rotate(e.mAngle, e.mAxis);
        if (e.mScale != 1.0f)
            transform.scale(e.mScale);
        transform.translate(float(-e.mPivot.x()), float(-e.mPivot.y()));
    }
    setLayerTransform(transform);
}

void DisplayView::setCompositeNestedLayers(bool composite)
{
    if (!ORBIS_ASSERT(layer(), QStringLiteral("Cannot composite nested layers if this view is not a layer.")))
        return;
    mCompositeNestedLayers = composite;
    updateCompositeNestedLayers();
}

void DisplayView::updateCompositeNestedLayers()
{
    if (layer())
        layer()->update(drawingAreaRect());
    update();
}

void DisplayView::setLayoutScale(double scale)
{
    if (!mUseLayer) {
        Logger::logAssert("mUseLayer",
                          QStringLiteral("Cannot use setLayoutScale on views that are not layers"),
                          kLogSource, __LINE__);
        return;
    }
    if (!ORBIS_ASSERT(scale != 0, QStringLiteral("scale != 0")))
        return;
    for (int extent : {mWidth, mHeight}) {
        const double scaled = extent * scale;
        const double fraction = scaled - std::floor(scaled);
        if (!ORBIS_ASSERT(fraction == 0.5 || fraction == 0,
                          QStringLiteral("fraction == 0.5 || fraction == 0")))
            return;
    }
    extras().mLayoutScale = scale;
    markDirtyRectsForRendering(false, true);
}

void DisplayView::setEffect(DisplayViewEffect* effect)
{
    if (effect && !effect->setSourceView(this))
        return;
    extras().mEffect = effect;
    update();
}

void DisplayView::setOverlay(DisplayViewOverlay* overlay)
{
    extras().mOverlay = overlay;
    update();
}

void DisplayView::setShadow(DisplayViewShadow* shadow)
{
    reveal(false);
    extras().mShadow = shadow;
    reveal(false);
}

void DisplayView::setShadowPadding(const Padding& padding)
{
    reveal(false);
    extras().mShadowPadding = padding;
    reveal(false);
}

DisplayView* DisplayView::layerView()
{
    for (DisplayView* view = this; view; view = view->mParentView) {
        if (view->layer())
            return view;
    }
    return nullptr;
}

void DisplayView::setUseDisplayList()
{
    mUseDisplayList = true;
    markDirtyRectsForRendering(false, true);
}

// Background

void DisplayView::setBackground(const char* imageName, bool stretch)
{
    setBackground(DisplayImage(QString::fromUtf8(imageName)), stretch);
}

void DisplayView::setBackground(const DisplayImage& image, bool stretch)
{
    if (image == ext().mBackgroundImage && stretch == ext().mStretchBackground)
        return;
    extras().mBackgroundImage = image;
    extras().mStretchBackground = stretch;
    update();
}

const DisplayImage& DisplayView::backgroundImage() const
{
    return ext().mBackgroundImage;
}

void DisplayView::setBackgroundColor(const SkinColor& color, double opacity)
{
    extras().mBackgroundColor = color;
    extras().mBackgroundOpacity = opacity;
    update();
}

void DisplayView::setBackgroundOpacity(double opacity)
{
    extras().mBackgroundOpacity = opacity;
    update();
}

void DisplayView::clearBackground()
{
    extras().mBackgroundImage = DisplayImage();
    extras().mBackgroundColor = SkinColor();
    extras().mBackgroundOpacity = 1.0;
    update();
}
