#pragma once

#include "DisplayView.h"
#include "OrbisUIFrameworkExport.h"

#include <ElapsedTimer.h>
#include <QHash>
#include <QList>
#include <QMatrix4x4>
#include <QRegion>
#include <QSet>
#include <QTimer>
#include <functional>
#include <memory>

class DisplayDeviceWidget;
class DisplayViewAnimation;
class DevToolsServer;
class PopupView;
class QGLFramebufferObject;
class QMouseEvent;
class QWheelEvent;
class TouchDevice;
class TouchOwnership;
class ViewBufferManager;

/// One screen and the root of its view tree. It owns the GL window, collects the
/// revealed (dirty) region, and runs the frame: data values, touches, animations and
/// deferred layouts (startFrame), every view's tick, then the rendering of dirty
/// layers into their framebuffers and the compositing of the layers onto the window
/// (finishFrame). It keeps the key and touch focus.
///
/// On a platform without a screen (offscreen, minimal) the device has no window:
/// the tree, animations and layouts still run, and finishFrame() only drops the
/// dirty state.
class ORBIS_UI_EXPORT DisplayDevice : public DisplayView
{
    Q_OBJECT

public:
    /// Counters of the frame loop since the last resetStats().
    struct FrameStats
    {
        int ticks = 0;       // frames run
        int drawnFrames = 0; // frames that rendered or composited something
        qint64 totalNs = 0;  // time spent in the ticks
        qint64 maxNs = 0;
        qint64 renderedPixels = 0;   // area re-rendered into layers (logical pixels)
        qint64 compositedPixels = 0; // area recomposited on screen (logical pixels)
        int lastSecondTicks = 0;     // ticks counted by the last once-a-second tick
    };

    /// screen: the index of the physical screen this device drives.
    DisplayDevice(int width, int height, int screen = 0);
    ~DisplayDevice() override;

    int screen() const { return mScreen; }
    void setSize(QSize size);
    QSize getSize() const { return size(); }
    void setPosition(QPoint position);
    void setTitle(const QString& title);
    void setVisible(bool visible);
    void setFullScreen(bool fullScreen);
    double getAspectRatio() const;
    /// The window matrix from windowScale and rotateOrientation.
    void initTransforms();
    void doResize(const QSize& windowSize);
    /// A logical rectangle in window pixels (of the framebuffer when one is given;
    /// flipped to GL's bottom-left origin when asked).
    QRect windowRect(const QRect& rect, QGLFramebufferObject* target, bool flipped) const;
    bool isTouchPosValid(const QPoint& point) const;
    DisplayDeviceWidget* widget() const { return mWidget; }
    ViewBufferManager* viewBufferManager() const { return mBufferManager.get(); }
    bool hasWindow() const { return mWidget != nullptr; }
    void makeCurrent();
    /// The texture budget in megabytes at run time (0: unbounded); the cache
    /// evicts at once when it holds more.
    void changeTextureCacheSize(int megabytes);

    /// Containers of the root, bottom to top.
    DisplayView* hiddenViews() const { return mHidden; }
    DisplayView* views() const { return mViews; }
    DisplayView* customLayers() const { return mCustomLayers; }
    DisplayView* popupViewContainer() const { return mPopupViewContainer; }
    DisplayView* popups() const { return mPopups; }
    DisplayView* overlays() const { return mOverlays; }

    /// Invalidation; rect is in screen coordinates.
    void reveal(const QRect& rect);
    void reveal();
    QRect padRevealRect(const QRect& rect) const;
    const QRegion& renderRegion() const { return mRenderRegion; }
    const QRegion& compositeRegion() const { return mCompositeRegion; }
    bool frameNeeded() const { return mFrameNeeded; }
    /// Hands over the collected regions and clears them (the frame's render step).
    void takeDirtyRegions(QRegion* render, QRegion* composite);

    /// Frame.
    QTimer* timer() { return &mTimer; }
    void startFrame();
    void finishFrame();
    void renderViews(DisplayView* view, DisplayView* layerParent);
    void renderView(DisplayView* view, ViewBuffer* buffer, bool revealOnScreen);
    void compositeNestedLayers();
    void compositeLayers();
    void measureFrameRate();
    void measureTick1sRate();
    QString dumpStats();
    void resetStats();
    const FrameStats& frameStats() const { return mStats; }
    /// Bytes held by layer framebuffers, and how many there are.
    qint64 layerMemory(int* count);

    /// Writes the next frame (or a part of it, in logical pixels) to an image file
    /// on the global thread pool.
    void screenshot(QString path);
    void screenshot(int x, int y, int width, int height, QString path);
    /// Hands the next composited frame to `done`, on the GUI thread during that frame.
    void grabFrame(std::function<void(const QImage&)> done);

    /// The view inspector, when "ui/inspector_port" started one (the display with
    /// screen index N listens on that port plus N).
    DevToolsServer* inspector() const { return mInspector.get(); }

    void updateAnimations();
    void processDeferredLayouts();
    void deferLayout(DisplayView* view);
    int deferredLayoutCount() const { return mDeferredLayouts.size(); }
    void dispatchTick(DisplayView* view);
    void dispatchTick1s(DisplayView* view);
    void dispatchReskinned(DisplayView* view);

    /// Animations.
    DisplayViewAnimation* getViewAnimation(DisplayView* view, bool create);
    void finishViewAnimation(DisplayView* view);
    int animationCount() const { return mAnimations.size(); }

    /// Focus.
    void setKeyFocus(DisplayView* view);
    void clearKeyFocus();
    void checkKeyFocus();
    DisplayView* keyFocus() const { return mKeyFocus; }
    void setTouchFocus(DisplayView* view);
    void clearTouchFocus();
    DisplayView* touchFocus() const { return mTouchFocus; }

    void doKeyPress(QKeyEvent* event) override;
    void doKeyRelease(QKeyEvent* event) override;
    void doWheel(QWheelEvent* event);
    /// Window pixels are turned into screen coordinates before the touch device queues them.
    void doMouse(QMouseEvent* event);
    virtual bool shouldShowTapAnimation(QPoint point);
    /// Hidden while touches arrive, shown again when the touch driver falls back to the mouse.
    void showCursor(bool show);
    bool cursorShown() const { return mCursorShown; }

    /// The touch dispatcher of this display, registered by the dispatcher itself.
    void setTouchOwnership(TouchOwnership* ownership) { mTouchOwnership = ownership; }
    TouchOwnership* touchOwnership() const { return mTouchOwnership; }

    /// Pop-ups, shown in the "popups" container above a dimming backdrop.
    void showPopup(PopupView* popup, bool animated);
    void dismissPopup(PopupView* popup, bool animated);
    void dismissAllPopups();
    void popupDidDismiss(PopupView* popup);
    const QList<PopupView*>& popupList() const { return mPopupList; }
    DisplayView* popupBackdrop();
    /// The screen area covered by a pop-up (or an on-screen keyboard).
    void setDisclosureArea(const QRect& area);
    QRect disclosureArea() const { return mDisclosureArea; }

    /// Views.
    void deleteView(DisplayView* view);
    void removeReferences(DisplayView* view);

    /// Process-wide settings.
    static int refreshRate;
    static double windowScale;
    static int rotateOrientation;
    static QString touchDriver;
    static bool useCursor;
    static bool debugUpdates;
    static bool debugPadding;
    static QList<DisplayDevice*> mDisplays;

public slots:
    void doTick();
    /// The day/night skin changed: views are told (reskinned) and the whole screen
    /// repaints.
    void skinChanged();

signals:
    void popupWillShow(PopupView* popup);
    void popupWillHide(PopupView* popup);
    void popupRectChanged();
    void disclosureAreaChanged(const QRect& area);

protected:
    virtual void popupWillBeShown(PopupView* popup);
    virtual void popupShown(PopupView* popup);
    virtual void popupWillBeDismissed(PopupView* popup);
    virtual void popupDismissed(PopupView* popup);

private slots:
    void popupAnimationComplete(DisplayView* view);

private:
    void createWindow();
    void applyCursor();
    /// Qt's own paint engine keeps its texture cache by this budget too.
    static void setQtTextureCacheLimit(int megabytes);
    void paintWithGraphics(DisplayView* view, ViewBuffer* buffer, const QTransform& toPixels,
                           const QRegion& dirty);
    void paintWithQt(DisplayView* view, ViewBuffer* buffer, const QTransform& toPixels, const QRegion& dirty);
    void paintLayerContent(QPainter& painter, DisplayView* view, ViewBuffer* buffer, const QRegion& dirty);
    /// Visible layers in painting order.
    void collectLayers(DisplayView* view, QVector<DisplayView*>* layers);
    void showOverdraw(const QRegion& region);
    void drawDirtyRects(const QRegion& region);
    void captureScreenshot();
    /// Shows or removes the GL memory line as "ui/show_gfx_memory_usage" says.
    void updateGfxMemoryLabel();
    /// The view's coordinates to the screen's (logical pixels).
    QMatrix4x4 screenMatrix(DisplayView* view) const;

    void completeAnimation(DisplayViewAnimation* animation);
    /// Calls the callback on the view and, depth first, on all its descendants.
    static void dispatch(DisplayView* view, void (DisplayView::*callback)());
    DisplayView* addContainer(const char* name);

    int mScreen;
    QRegion mRenderRegion;
    QRegion mCompositeRegion;
    bool mFrameNeeded = false;
    QList<DisplayViewAnimation*> mAnimations;
    QList<DisplayView*> mDeferredLayouts;
    QSet<DisplayView*> mDeferredSet;
    DisplayView* mKeyFocus = nullptr;
    DisplayView* mTouchFocus = nullptr;
    TouchOwnership* mTouchOwnership = nullptr;
    bool mCursorShown = true;
    DisplayView* mHidden;
    DisplayView* mViews;
    DisplayView* mCustomLayers;
    DisplayView* mPopupViewContainer;
    DisplayView* mPopups;
    DisplayView* mOverlays;

    QList<PopupView*> mPopupList;
    DisplayView* mPopupBackdrop = nullptr;
    DisplayView* mGfxMemoryLabel = nullptr;
    QRect mDisclosureArea;
    DisplayDeviceWidget* mWidget = nullptr;
    TouchDevice* mTouchDevice = nullptr;
    std::unique_ptr<ViewBufferManager> mBufferManager;
    QTimer mTimer;
    ElapsedTimer mSecondTimer;
    ElapsedTimer mFrameTimer;
    QMatrix4x4 mWindowMatrix;
    QSize mWindowSize;
    FrameStats mStats;
    int mSecondTicks = 0;
    struct PendingScreenshot
    {
        QRect rect;
        QString path;
        std::function<void(const QImage&)> done;
    };
    QList<PendingScreenshot> mScreenshots;
    /// Per layer that holds nested layers, where they must be composited this frame.
    QHash<DisplayView*, QRegion> mNestedRendered;
    std::unique_ptr<DevToolsServer> mInspector;
};
