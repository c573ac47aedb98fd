#pragma once

#include "DisplayView.h"

#include <QList>
#include <QRegion>

class DisplayViewAnimation;
class TouchOwnership;

// One screen and the root of its view tree. It collects the revealed (dirty)
// region, runs the view animations and the deferred layouts of each frame, and
// keeps the key and touch focus. The window, the frame timer and the compositing
// of layers belong to the screen side and attach to startFrame()/finishFrame().
class DisplayDevice : public DisplayView
{
    Q_OBJECT

public:
    // screen: the index of the physical screen this device drives.
    DisplayDevice(int width, int height, int screen = 0);
    ~DisplayDevice() override;

    int screen() const { return mScreen; }
    void setSize(QSize size);
    QSize getSize() const { return size(); }

    // Containers of the root, bottom to top.
    DisplayView* hiddenViews() const { return mHidden; }
    DisplayView* views() const { return mViews; }
    DisplayView* customLayers() const { return mCustomLayers; }
    DisplayView* popupViewContainer() const { return mPopupViewContainer; }
    DisplayView* popups() const { return mPopups; }
    DisplayView* overlays() const { return mOverlays; }

    // Invalidation; rect is in screen coordinates.
    void reveal(const QRect& rect);
    void reveal();
    QRect padRevealRect(const QRect& rect) const;
    const QRegion& renderRegion() const { return mRenderRegion; }
    const QRegion& compositeRegion() const { return mCompositeRegion; }
    bool frameNeeded() const { return mFrameNeeded; }
    // Hands over the collected regions and clears them (the frame's render step).
    void takeDirtyRegions(QRegion* render, QRegion* composite);

    // Frame.
    void startFrame();
    void updateAnimations();
    void processDeferredLayouts();
    void deferLayout(DisplayView* view);
    int deferredLayoutCount() const { return mDeferredLayouts.size(); }
    void dispatchTick(DisplayView* view);
    void dispatchTick1s(DisplayView* view);
    void dispatchReskinned(DisplayView* view);

    // Animations.
    DisplayViewAnimation* getViewAnimation(DisplayView* view, bool create);
    void finishViewAnimation(DisplayView* view);
    int animationCount() const { return mAnimations.size(); }

    // Focus.
    void setKeyFocus(DisplayView* view);
    void clearKeyFocus();
    void checkKeyFocus();
    DisplayView* keyFocus() const { return mKeyFocus; }
    void setTouchFocus(DisplayView* view);
    void clearTouchFocus();
    DisplayView* touchFocus() const { return mTouchFocus; }

    virtual bool shouldShowTapAnimation(QPoint point);
    // Hidden while touches arrive, shown again when the touch driver falls back to the mouse.
    void showCursor(bool show);
    bool cursorShown() const { return mCursorShown; }

    // The touch dispatcher of this display, registered by the dispatcher itself.
    void setTouchOwnership(TouchOwnership* ownership) { mTouchOwnership = ownership; }
    TouchOwnership* touchOwnership() const { return mTouchOwnership; }

    // Views.
    void deleteView(DisplayView* view);
    void removeReferences(DisplayView* view);

    // Process-wide settings.
    static int refreshRate;
    static double windowScale;
    static int rotateOrientation;
    static QString touchDriver;
    static bool useCursor;
    static bool debugUpdates;
    static bool debugPadding;
    static QList<DisplayDevice*> mDisplays;

private:
    void completeAnimation(DisplayViewAnimation* animation);
    // Calls the callback on the view and, depth first, on all its descendants.
    static void dispatch(DisplayView* view, void (DisplayView::*callback)());
    DisplayView* addContainer(const char* name);

    int mScreen;
    QRegion mRenderRegion;
    QRegion mCompositeRegion;
    bool mFrameNeeded = false;
    QList<DisplayViewAnimation*> mAnimations;
    QList<DisplayView*> mDeferredLayouts;
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
};
