#include "DisplayDevice.h"

#include "ConfigValue.h"
#include "DataValueManager.h"
#include "DisplayDeviceWidget.h"
#include "DisplayViewAnimation.h"
#include "DisplayViewExtras.h"
#include "Graphics.h"
#include "Logger.h"
#include "PopupView.h"
#include "SingleShotTimer.h"
#include "SkinManager.h"
#include "TouchOwnership.h"
#include "ViewBufferManager.h"
#include "devtools/DevToolsServer.h"
#include "input/touch/TouchDevice.h"

#include <CoverageMaskCache.h>
#include <GLExtensions.h>
#include <GLFunctions.h>
#include <GLStateManager.h>
#include <GeometryBufferAllocator.h>
#include <GlyphCache.h>
#include <QBitmap>
#include <QGLFramebufferObject>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWheelEvent>
#include <ShaderCache.h>
#include <SharedTextureManager.h>
#include <TextureCache.h>
#include <algorithm>
#include <cmath>

static const char* const kLogSource = "../../../gui/DisplayDevice";

static ConfigIntValue gMaxLayoutIterations("ui/max_layout_iterations", 10);
static ConfigBoolValue gPrintVisitedCount("ui/print_layout_visited_node_count", false);
static ConfigBoolValue gPrintPlaceCount("ui/print_layout_place_count", false);
static ConfigBoolValue gPrintDeferredListSize("ui/print_deferred_list_size", false);
static ConfigIntValue gTickTimerOffset("ui/tick_timer_offset", 0);
static ConfigBoolValue gHideXCursor("ui/hide_x_cursor", true);
static ConfigBoolValue gDumpGLExtensions("ui/dump_gl_extensions", false);
static ConfigIntValue gEnableShortcuts("ui/enable_shortcuts", 0);

int DisplayDevice::refreshRate = 60;
double DisplayDevice::windowScale = 1.0;
int DisplayDevice::rotateOrientation = 0;
QString DisplayDevice::touchDriver;
bool DisplayDevice::useCursor = false;
bool DisplayDevice::debugUpdates = false;
bool DisplayDevice::debugPadding = false;
QList<DisplayDevice*> DisplayDevice::mDisplays;

DisplayDevice::DisplayDevice(int width, int height, int screen)
    : DisplayView(nullptr, "DisplayDevice"), mScreen(screen)
{
    setDevice(this);
    qRegisterMetaType<QStringList*>("QStringList*");
    setTouchBehavior(IgnoreTouches, true);
    applySize(width, height);
    initTransforms();
    createWindow();
    if (mWidget) {
        setQtTextureCacheLimit(gfx::TextureCacheSize.value());
        mBufferManager = std::make_unique<ViewBufferManager>(mWidget);
        doResize(mWindowSize);
    }
    // The touch device deletes itself with this device.
    mTouchDevice = TouchDevice::getInstance(this);
    mTouchDevice->setSize(QSize(width, height));
    setUseLayer(true);
    mHidden = addContainer("hidden");
    mViews = addContainer("views");
    mCustomLayers = addContainer("customLayers");
    mPopupViewContainer = addContainer("popupViewContainer");
    mPopups = addContainer("popups");
    mOverlays = addContainer("overlays");
    // Views that must exist off screen: never shown, never dirty anything.
    mHidden->show(false);
    mHidden->setUpdateBehavior(NoUpdates, true);
    mHidden->setUseLayer(true);
    mSecondTimer.start();
    mTouchDevice->loadTouchDriver(touchDriver);
    showCursor(useCursor);
    connect(SkinManager::instance(), SIGNAL(skinChanged()), this, SLOT(skinChanged()));
    mDisplays.append(this);
    if (mWidget) {
        mWidget->makeCurrent();
        const QString extensions = QString::fromLatin1(
            reinterpret_cast<const char*>(gfx::GLFunctions::current()->glGetString(GL_EXTENSIONS)));
        if (gDumpGLExtensions.value())
            ORBIS_INFO(QStringLiteral("Extensions: ") +
                       extensions.split(QLatin1Char(' ')).join(QLatin1Char('\n')));
        gfx::loadExtensions();
    }
    mRenderRegion = QRegion();
    mCompositeRegion = QRegion();
    mFrameNeeded = false;

    const int inspectorPort = DevToolsServer::configuredPort();
    if (inspectorPort > 0 &&
        ORBIS_ASSERT(inspectorPort + screen <= 65535,
                     QStringLiteral("The inspector port is out of range: %1").arg(inspectorPort + screen))) {
        mInspector = std::make_unique<DevToolsServer>(this);
        if (!mInspector->listen(quint16(inspectorPort + screen)))
            mInspector.reset();
    }

    mTimer.setObjectName(QStringLiteral("UITick"));
    mTimer.setSingleShot(false);
    connect(&mTimer, SIGNAL(timeout()), this, SLOT(doTick()));
    if (ORBIS_ASSERT(refreshRate > 0, QStringLiteral("The refresh rate must be positive")))
        mTimer.start(1000 / refreshRate + gTickTimerOffset.value());
}

void DisplayDevice::createWindow()
{
    // Platforms without a screen cannot make a GL window.
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
        return;
    mWidget = new DisplayDeviceWidget(this);
    applyCursor();
}

void DisplayDevice::applyCursor()
{
    if (!mWidget)
        return;
    if (gHideXCursor.value() || !mCursorShown) {
        QBitmap blank(16, 16);
        blank.clear();
        mWidget->setCursor(QCursor(blank, blank));
    } else {
        mWidget->setCursor(Qt::ArrowCursor);
    }
}

void DisplayDevice::makeCurrent()
{
    if (mWidget)
        mWidget->makeCurrent();
}

void DisplayDevice::setQtTextureCacheLimit(int megabytes)
{
    const int limitKb = qMax(0, megabytes) * 1024;
    QGLContext::setTextureCacheLimit(limitKb);
    ORBIS_INFO(QStringLiteral("setting texture cache to %1").arg(limitKb));
}

void DisplayDevice::changeTextureCacheSize(int megabytes)
{
    if (!ORBIS_ASSERT(megabytes >= 0,
                      QStringLiteral("The texture cache size cannot be negative: %1").arg(megabytes)))
        return;
    gfx::TextureCache::instance()->setMaxSizeMb(megabytes);
    if (mWidget)
        setQtTextureCacheLimit(megabytes);
}

DisplayDevice::~DisplayDevice()
{
    // The inspector's client goes first: its overlay is part of the tree.
    mInspector.reset();
    // Layer framebuffers belong to the window's context.
    makeCurrent();
    // The tree goes first, while the device can still drop its references to it.
    clearAllChildren();
    qDeleteAll(mAnimations);
    mAnimations.clear();
    mDisplays.removeOne(this);
    if (mExtras)
        mExtras->mLayer.reset();
    // The last window takes its context's programs and textures with it: the caches
    // must not hand their names to the contexts of later windows.
    if (mWidget &&
        std::none_of(mDisplays.begin(), mDisplays.end(), [](DisplayDevice* d) { return d->mWidget; })) {
        gfx::ShaderCache::instance()->releaseAll();
        gfx::GeometryBufferAllocator::instance()->releaseSpareBuffers();
        if (Singleton<gfx::GlyphCache>::exists())
            gfx::GlyphCache::instance()->releaseTextures();
        Singleton<gfx::CoverageMaskCache>::reset();
        if (Singleton<gfx::SharedTextureManager>::exists())
            gfx::SharedTextureManager::instance()->releaseTextures();
        if (Singleton<gfx::TextureCache>::exists()) {
            gfx::TextureCache::instance()->clear();
            gfx::TextureCache::instance()->destroyExpiredTextures();
        }
        gfx::GLStateManager::instance()->clearToInvalid();
    }
    delete mWidget;
}

DisplayView* DisplayDevice::addContainer(const char* name)
{
    DisplayView* container = new DisplayView(this, name);
    container->autoResizeToParent(QRectF(0, 0, 1, 1));
    container->setTouchBehavior(IgnoreTouches, true);
    return container;
}

void DisplayDevice::setSize(QSize size)
{
    applySize(size.width(), size.height());
    initTransforms();
    if (mWidget)
        doResize(mWindowSize);
    mTouchDevice->setSize(size);
    reveal();
}

void DisplayDevice::setPosition(QPoint position)
{
    if (mWidget)
        mWidget->move(position);
}

void DisplayDevice::setTitle(const QString& title)
{
    if (mWidget)
        mWidget->setWindowTitle(title);
}

void DisplayDevice::setVisible(bool visible)
{
    if (!mWidget)
        return;
    mWidget->setVisible(visible);
    if (visible)
        reveal();
}

void DisplayDevice::setFullScreen(bool fullScreen)
{
    if (!mWidget)
        return;
    if (fullScreen)
        mWidget->showFullScreen();
    else
        mWidget->showNormal();
    reveal();
}

double DisplayDevice::getAspectRatio() const
{
    return height() == 0 ? 0.0 : double(width()) / double(height());
}

void DisplayDevice::initTransforms()
{
    const int turns = ((rotateOrientation % 360 + 360) % 360) / 90;
    if (!ORBIS_ASSERT(rotateOrientation % 90 == 0,
                      QStringLiteral("rotateOrientation must be a multiple of 90")))
        return;
    const QSize scaled = Graphics::scaledRect(QRect(0, 0, width(), height()), windowScale).size();
    mWindowSize = turns % 2 ? scaled.transposed() : scaled;
    // Rotate about the centre of the screen, then move the centre to the window's.
    mWindowMatrix.setToIdentity();
    mWindowMatrix.translate(mWindowSize.width() / 2.0f, mWindowSize.height() / 2.0f);
    mWindowMatrix.rotate(90.0f * turns, 0, 0, 1);
    mWindowMatrix.scale(float(windowScale));
    mWindowMatrix.translate(-width() / 2.0f, -height() / 2.0f);
}

void DisplayDevice::doResize(const QSize& windowSize)
{
    if (!mWidget)
        return;
    mWidget->resize(windowSize);
    reveal();
}

QRect DisplayDevice::windowRect(const QRect& rect, QGLFramebufferObject* target, bool flipped) const
{
    if (target)
        return flipped
                   ? QRect(rect.x(), target->height() - rect.y() - rect.height(), rect.width(), rect.height())
                   : rect;
    const QRect mapped = mWindowMatrix.mapRect(rect);
    if (!flipped)
        return mapped;
    return QRect(mapped.x(), mWindowSize.height() - mapped.y() - mapped.height(), mapped.width(),
                 mapped.height());
}

bool DisplayDevice::isTouchPosValid(const QPoint& point) const
{
    return QRect(0, 0, width(), height()).contains(point);
}

// Input

void DisplayDevice::doKeyPress(QKeyEvent* event)
{
    if (gEnableShortcuts.value() && event->modifiers() & Qt::ControlModifier) {
        // Debug shortcuts of development builds.
        switch (event->key()) {
        case Qt::Key_U:
            debugUpdates = !debugUpdates;
            markDirtyRectsForRendering(true, true);
            return;
        case Qt::Key_P:
            debugPadding = !debugPadding;
            markDirtyRectsForRendering(true, true);
            return;
        case Qt::Key_S:
            dumpStats();
            return;
        default:
            break;
        }
    }
    if (mKeyFocus)
        mKeyFocus->doKeyPress(event);
}

void DisplayDevice::doKeyRelease(QKeyEvent* event)
{
    if (mKeyFocus)
        mKeyFocus->doKeyRelease(event);
}

void DisplayDevice::doMouse(QMouseEvent* event)
{
    const QPointF point = mWindowMatrix.inverted().map(event->localPos());
    QMouseEvent mapped(event->type(), point, point, event->screenPos(), event->button(), event->buttons(),
                       event->modifiers());
    mTouchDevice->mouseEvent(&mapped);
}

void DisplayDevice::doWheel(QWheelEvent* event)
{
    const QPoint point = mWindowMatrix.inverted().map(event->pos());
    if (DisplayView* view = viewAtPoint(point))
        view->wheeled(point, event->angleDelta().y());
}

// Invalidation

QRect DisplayDevice::padRevealRect(const QRect& rect) const
{
    const int s = int(std::lround(windowScale));
    if (windowScale == 1.0 || s == 0)
        return rect;
    const int left = ((rect.left() + 1 - s) / s) * s;
    const int top = ((rect.top() + 1 - s) / s) * s;
    const int width = ((rect.right() - left + 3 * s) / (2 * s)) * 2 * s;
    const int height = ((rect.bottom() - top + 3 * s) / (2 * s)) * 2 * s;
    return QRect(left, top, width, height);
}

void DisplayDevice::reveal(const QRect& rect)
{
    const QRect padded = padRevealRect(rect);
    mRenderRegion += padded;
    mCompositeRegion += padded;
    mFrameNeeded = true;
}

void DisplayDevice::reveal()
{
    reveal(QRect(0, 0, width(), height()));
}

void DisplayDevice::takeDirtyRegions(QRegion* render, QRegion* composite)
{
    if (render)
        *render = mRenderRegion;
    if (composite)
        *composite = mCompositeRegion;
    mRenderRegion = QRegion();
    mCompositeRegion = QRegion();
    mFrameNeeded = false;
}

// Frame

void DisplayDevice::startFrame()
{
    DataValueManager::instance()->processPendingChanges();
    if (mTouchOwnership)
        mTouchOwnership->processEvents();
    updateAnimations();
    SingleShotTimer::fireExpired();
    checkKeyFocus();
    sVisitedCount = 0;
    sPlaceCount = 0;
    processDeferredLayouts();
    if (gPrintVisitedCount.value())
        ORBIS_INFO(QStringLiteral("visitedLayout() Count: %1").arg(sVisitedCount));
    if (gPrintPlaceCount.value())
        ORBIS_INFO(QStringLiteral("place() Count: %1").arg(sPlaceCount));
}

void DisplayDevice::updateAnimations()
{
    const QList<DisplayViewAnimation*> running = mAnimations;
    for (DisplayViewAnimation* animation : running) {
        // An earlier completion may have deleted this one's view.
        if (!mAnimations.contains(animation))
            continue;
        if (!animation->update())
            completeAnimation(animation);
    }
}

void DisplayDevice::completeAnimation(DisplayViewAnimation* animation)
{
    mAnimations.removeOne(animation);
    DisplayView* view = animation->view();
    const bool hide = animation->hideWhenDone;
    delete animation;
    if (hide)
        view->show(false);
    view->animationComplete();
    emit view->animationComplete(view);
    if (view->mDeleteAfterAnimation)
        delete view;
}

DisplayViewAnimation* DisplayDevice::getViewAnimation(DisplayView* view, bool create)
{
    for (DisplayViewAnimation* animation : qAsConst(mAnimations)) {
        if (animation->view() == view)
            return animation;
    }
    if (!create)
        return nullptr;
    if (view->mDestroying) {
        view->viewAssert("!mDestroying",
                         QStringLiteral("Creating an animation for a dereferenced view View: %1"), __LINE__);
        return nullptr;
    }
    DisplayViewAnimation* animation = new DisplayViewAnimation(view);
    mAnimations.append(animation);
    view->animationStarted();
    emit view->animationStarted(view);
    return animation;
}

void DisplayDevice::finishViewAnimation(DisplayView* view)
{
    if (DisplayViewAnimation* animation = getViewAnimation(view, false)) {
        animation->finish();
        completeAnimation(animation);
    }
}

void DisplayDevice::deferLayout(DisplayView* view)
{
    // Building a screen queues every new view: the set keeps that linear.
    if (!mDeferredSet.contains(view)) {
        mDeferredSet.insert(view);
        mDeferredLayouts.append(view);
    }
}

void DisplayDevice::processDeferredLayouts()
{
    if (gPrintDeferredListSize.value())
        ORBIS_INFO(QStringLiteral("Deferred layouts: %1").arg(mDeferredLayouts.size()));
    // A pass may dirty other views; they are laid out in further passes, up to a bound.
    for (int pass = 0; pass < gMaxLayoutIterations.value() && !mDeferredLayouts.isEmpty(); ++pass) {
        const QList<DisplayView*> queue = mDeferredLayouts;
        mDeferredLayouts.clear();
        mDeferredSet.clear();
        for (DisplayView* view : queue) {
            // Views laid out by an earlier one of this batch are clean by now.
            if (view->isLayoutDirty())
                view->deferredLayout();
        }
    }
}

void DisplayDevice::dispatch(DisplayView* view, void (DisplayView::*callback)())
{
    (view->*callback)();
    const DisplayViewList::List children = view->children().list();
    for (DisplayView* child : children)
        dispatch(child, callback);
}

void DisplayDevice::dispatchTick(DisplayView* view)
{
    dispatch(view, &DisplayView::tick);
}

void DisplayDevice::dispatchTick1s(DisplayView* view)
{
    dispatch(view, &DisplayView::tick1s);
}

void DisplayDevice::dispatchReskinned(DisplayView* view)
{
    dispatch(view, &DisplayView::reskinned);
}

void DisplayDevice::skinChanged()
{
    // Every colour may have changed, including those views read at draw time.
    dispatchReskinned(this);
    markDirtyRectsForRendering(true, true);
    reveal();
}

// Focus

void DisplayDevice::setKeyFocus(DisplayView* view)
{
    if (view == mKeyFocus)
        return;
    if (view && !ORBIS_ASSERT(view->canHaveKeyFocus(), QStringLiteral("View cannot have key focus")))
        return;
    DisplayView* old = mKeyFocus;
    mKeyFocus = view;
    if (old)
        old->lostKeyFocus();
    if (view)
        view->gotKeyFocus();
}

void DisplayDevice::clearKeyFocus()
{
    setKeyFocus(nullptr);
}

void DisplayDevice::checkKeyFocus()
{
    if (mKeyFocus && (!mKeyFocus->isVisible(nullptr) || !mKeyFocus->isEnabled()))
        clearKeyFocus();
}

void DisplayDevice::setTouchFocus(DisplayView* view)
{
    if (view == mTouchFocus)
        return;
    DisplayView* old = mTouchFocus;
    mTouchFocus = view;
    if (old) {
        old->lostTouchFocus();
        emit old->lostTouchFocus(old);
    }
    if (view) {
        view->gotTouchFocus();
        emit view->gotTouchFocus(view);
    }
}

void DisplayDevice::clearTouchFocus()
{
    setTouchFocus(nullptr);
}

bool DisplayDevice::shouldShowTapAnimation(QPoint point)
{
    return QRect(QPoint(), getSize()).contains(point);
}

void DisplayDevice::showCursor(bool show)
{
    if (show == mCursorShown)
        return;
    mCursorShown = show;
    applyCursor();
}

// Views

void DisplayDevice::removeReferences(DisplayView* view)
{
    if (mDeferredSet.remove(view))
        mDeferredLayouts.removeOne(view);
    if (DisplayViewAnimation* animation = getViewAnimation(view, false)) {
        mAnimations.removeOne(animation);
        delete animation;
    }
    if (mKeyFocus == view)
        mKeyFocus = nullptr;
    if (mTouchFocus == view)
        mTouchFocus = nullptr;
    mPopupList.erase(std::remove_if(mPopupList.begin(), mPopupList.end(),
                                    [view](PopupView* popup) { return popup == view; }),
                     mPopupList.end());
    if (mPopupBackdrop == view)
        mPopupBackdrop = nullptr;
    if (mGfxMemoryLabel == view)
        mGfxMemoryLabel = nullptr;
}

void DisplayDevice::deleteView(DisplayView* view)
{
    if (!ORBIS_ASSERT(view && view != this, QStringLiteral("Cannot delete this view")))
        return;
    view->changeParent(nullptr);
    view->deleteLater();
}
