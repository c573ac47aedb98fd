#pragma once

#include "DisplayView.h"
#include "ElapsedTimer.h"
#include "OrbisUIFrameworkExport.h"
#include "TouchEvent.h"
#include "TouchInfo.h"
#include "TouchOwnership.h"

#include <QObject>
#include <QPointF>
#include <QSize>
#include <array>
#include <functional>
#include <memory>

class DisplayDevice;
class MouseTouchDriver;
class QMouseEvent;
class TouchDriver;

/// The touch dispatcher of one display. Drivers queue raw presses, moves and releases
/// from their own threads; once per frame processEvents() delivers them on the GUI
/// thread: hit testing, ownership, taps, multi-taps, drags and two-finger pinch and
/// rotate, as callbacks on the owning views.
class ORBIS_UI_EXPORT TouchDevice : public QObject, public TouchOwnership
{
    Q_OBJECT

public:
    static constexpr int kMaxTouches = 16;
    static constexpr int kMultiTapMs = 333;
    static constexpr int kDefaultDragThreshold = 30;
    /// Delegates that hand a drag on to each other in a cycle stop after this many steps.
    static constexpr int kMaxDragHandOvers = 8;

    /// The dispatcher of the display, created on first use. It registers itself as the
    /// display's touch ownership and goes away with the display.
    static TouchDevice* getInstance(DisplayDevice* device);

    /// "" or "mouse": the mouse only; "evdev" (the device of "ui/touch_device") or
    /// "evdev:<path>": a multi-touch controller beside the mouse. False when the
    /// driver cannot run; the mouse keeps working. "script:<path>" replays a touch
    /// script file (see TouchScript).
    bool loadTouchDriver(const QString& name);
    /// Replaces the driver beside the mouse (null: the mouse only); fingers of the
    /// old driver are cancelled.
    void setTouchDriver(std::unique_ptr<TouchDriver> driver);
    TouchDriver* touchDriver() const { return mDriver.get(); }
    MouseTouchDriver* mouseDriver() const { return mMouse.get(); }
    void setSize(const QSize& size);

    void processEvents() override;
    void doTouchEvent(int id, TouchState state, QPoint point);
    void mouseEvent(QMouseEvent* event);
    static int mouseTouchPointId() { return kMaxTouches - 2; }

    /// Ownership.
    void setView(int id, DisplayView* view);
    void clearView(int id);
    void clearView(DisplayView* view);
    void transferTouch(int id, DisplayView* to) override;
    bool viewHasTouch(DisplayView* view, bool descendants) override;
    void iterateTouchesForView(DisplayView* view, bool descendants,
                               std::function<void(int, TouchState, const QPoint&)>&& visit);
    void cancelTouch(TouchInfo& info, int id);
    void cancelTouchEvents(DisplayView* view) override;

    /// Per-touch tuning by the owning view, valid until the next press of the identifier.
    void setTapTimeThreshold(int id, int ms);
    void setDragDistanceThreshold(int id, int pixels);
    void setTapAnimation(int id, bool wanted);
    /// Holds a tap back until the multi-tap window has closed, so that the view gets one
    /// tapped() with the final tap count instead of one per press.
    void setUseTapTimer(int id, bool use);

    /// Queries; an identifier outside the table is reported and reads as nothing.
    TouchInfo* info(int id);
    int getPair(int id);
    QPoint getPairCenterPoint(int id);
    /// Pixels per millisecond over the last samples of the touch.
    QPointF getVelocity(int id);

    void handleGesture(int id, DisplayView* view, DisplayView::TouchGesture gesture);

    void enableLogging(bool enable) { mLogging = enable; }
    bool isLogging() const { return mLogging; }
    bool isUserPresent() const { return mUserPresent; }

signals:
    void userPresent(bool present);
    void sendLog(QString message);

public slots:
    void touchDriverError();
    void touchDelayTimerExpired(int id);

private slots:
    void displayStateChanged();
    void viewDestroyed(QObject* view);

private:
    explicit TouchDevice(DisplayDevice* device);
    ~TouchDevice() override;

    bool validId(int id);
    void dropDriver();
    bool inputBlocked() const;
    void dispatch(const TouchEvent& event);
    void press(int id, QPoint point);
    void move(int id, QPoint point);
    void release(int id, QPoint point);
    int findPartner(int id, DisplayView* hit);
    void unpair(TouchInfo& info);
    QPointF pairVector(int id) const;
    void detachOwner(TouchInfo& info, int id);
    DisplayView* dragTaker(int id, DisplayView* view);
    void deliverTap(int id, DisplayView* view, QPoint point);
    void showTapAnimation(QPoint point);
    void log(int id, const char* what, QPoint point, DisplayView* view);

    DisplayDevice* mDevice;
    std::array<TouchInfo, kMaxTouches> mInfos;
    std::unique_ptr<MouseTouchDriver> mMouse;
    std::unique_ptr<TouchDriver> mDriver;
    QSize mSize;
    qint64 mEventTimeMs = 0;
    bool mLogging = false;
    bool mUserPresent = false;
    ElapsedTimer mSinceLastTouch;
    ElapsedTimer mSinceDisplayStateChange;
};

/// The dispatcher of the most recently created display.
extern ORBIS_UI_EXPORT TouchDevice* theTouchDevice;
