#include "TouchDevice.h"

#include "Clock.h"
#include "ConfigValue.h"
#include "DataValues.h"
#include "DisplayDevice.h"
#include "EvdevTouchDriver.h"
#include "Logger.h"
#include "MouseTouchDriver.h"
#include "PointUtils.h"
#include "ScriptTouchDriver.h"
#include "TapAnimationView.h"

#include <QDateTime>
#include <QHash>
#include <QPointer>
#include <cmath>

static const char* const kLogSource = "../../../gui/input/touch/TouchDevice";

static ConfigIntValue gTapThreshold("ui/tap_threshold", 800);
static ConfigIntValue gGestureRecognitionTime("ui/gesture_recognition_time", 100);
static ConfigIntValue gLogTouchedViews("ui/log_touched_views", 0);
static ConfigIntValue gUserPresentTimeout("ui/user_present_timeout", 10000);
static ConfigIntValue gIgnoreTouchTimeout("display_state/ignore_touch_timeout", 30);
static ConfigStringValue gTouchDevicePath("ui/touch_device", QStringLiteral("/dev/input/event0"));

TouchDevice* theTouchDevice = nullptr;

namespace {
QHash<DisplayDevice*, TouchDevice*>& instances()
{
    static QHash<DisplayDevice*, TouchDevice*> map;
    return map;
}

} // namespace

TouchDevice* TouchDevice::getInstance(DisplayDevice* device)
{
    if (!device)
        return theTouchDevice;
    TouchDevice*& instance = instances()[device];
    if (!instance)
        instance = new TouchDevice(device);
    return instance;
}

TouchDevice::TouchDevice(DisplayDevice* device)
    : mDevice(device),
      mMouse(std::make_unique<MouseTouchDriver>(mouseTouchPointId(), mouseTouchPointId() + 1)),
      mSize(device->getSize())
{
    theTouchDevice = this;
    device->setTouchOwnership(this);
    for (int id = 0; id < kMaxTouches; ++id) {
        mInfos[id].touchDelayTimer.setInterval(kMultiTapMs);
        connect(&mInfos[id].touchDelayTimer, &QTimer::timeout, this,
                [this, id] { touchDelayTimerExpired(id); });
    }
    // The display is gone by the time this fires: forget it, never call it.
    connect(device, &QObject::destroyed, this, [this, device] {
        instances().remove(device);
        delete this;
    });
    connect(&GUI_touchDriverError, SIGNAL(valueChanged(DataValue*)), this, SLOT(touchDriverError()));
    connect(&CD_displayState, SIGNAL(valueChanged(DataValue*)), this, SLOT(displayStateChanged()));
}

TouchDevice::~TouchDevice()
{
    if (theTouchDevice == this)
        theTouchDevice = instances().isEmpty() ? nullptr : *instances().begin();
}

bool TouchDevice::loadTouchDriver(const QString& name)
{
    dropDriver();
    if (name.isEmpty() || name == QLatin1String("mouse"))
        return true;
    if (name == QLatin1String("evdev") || name.startsWith(QLatin1String("evdev:"))) {
        const QString path = name == QLatin1String("evdev") ? gTouchDevicePath.value() : name.mid(6);
        auto driver = std::make_unique<EvdevTouchDriver>();
        driver->setSize(mSize);
        if (!driver->open(path))
            return false;
        mDriver = std::move(driver);
        return true;
    }
    if (name.startsWith(QLatin1String("script:"))) {
        TouchScript script;
        if (!script.load(name.mid(7))) {
            ORBIS_ERROR(QStringLiteral("Touch script: %1").arg(script.error()));
            return false;
        }
        setTouchDriver(std::make_unique<ScriptTouchDriver>(script));
        return true;
    }
    ORBIS_ERROR(QStringLiteral("Unknown touch driver: %1").arg(name));
    DataValue::EventLocker lock(GUI_touchDriverError);
    GUI_touchDriverError.setValue(true);
    return false;
}

void TouchDevice::setSize(const QSize& size)
{
    mSize = size;
    mMouse->setSize(size);
    if (mDriver)
        mDriver->setSize(size);
}

void TouchDevice::touchDriverError()
{
    bool failed;
    {
        DataValue::ConditionalLocker lock(GUI_touchDriverError);
        failed = GUI_touchDriverError.toBool();
    }
    if (!failed || !mDriver)
        return;
    ORBIS_WARN(QStringLiteral("Touch driver failed; touch input continues from the mouse"));
    dropDriver();
    if (mDevice)
        mDevice->showCursor(true);
}

void TouchDevice::setTouchDriver(std::unique_ptr<TouchDriver> driver)
{
    dropDriver();
    mDriver = std::move(driver);
    if (mDriver)
        mDriver->setSize(mSize);
}

// Fingers of a driver that goes away would otherwise stay down on their views forever.
void TouchDevice::dropDriver()
{
    if (!mDriver)
        return;
    mDriver.reset();
    for (int id = 0; id < mouseTouchPointId(); ++id) {
        if (mInfos[id].isLive())
            cancelTouch(mInfos[id], id);
    }
}

void TouchDevice::displayStateChanged()
{
    mSinceDisplayStateChange.start();
}

// Frame

void TouchDevice::processEvents()
{
    QVector<TouchEvent> events;
    if (mDriver) {
        mDriver->queueDueEvents();
        events = mDriver->getEvents();
    }
    events += mMouse->getEvents();
    for (const TouchEvent& event : qAsConst(events))
        dispatch(event);
    if (!events.isEmpty()) {
        mSinceLastTouch.start();
        if (mDevice)
            mDevice->showCursor(false);
        if (!mUserPresent) {
            mUserPresent = true;
            emit userPresent(true);
        }
    } else if (mUserPresent && mSinceLastTouch.elapsed() >= gUserPresentTimeout.value()) {
        mUserPresent = false;
        emit userPresent(false);
    }
}

void TouchDevice::doTouchEvent(int id, TouchState state, QPoint point)
{
    TouchEvent event;
    event.id = id;
    event.state = state;
    event.point = point;
    event.timeMs = Clock::current()->nowMilliseconds();
    dispatch(event);
}

bool TouchDevice::validId(int id)
{
    if (id >= 0 && id < kMaxTouches)
        return true;
    ORBIS_WARN(QStringLiteral("invalid touch %1").arg(id));
    return false;
}

bool TouchDevice::inputBlocked() const
{
    int state;
    {
        DataValue::ConditionalLocker lock(CD_displayState);
        state = CD_displayState.toInt();
    }
    bool updating;
    {
        DataValue::ConditionalLocker lock(GUI_softwareUpdateGatewayInProgress);
        updating = GUI_softwareUpdateGatewayInProgress.toBool();
    }
    // A screen that was just switched on still sees the touch that woke it.
    const bool settling = mSinceDisplayStateChange.isValid() &&
                          mSinceDisplayStateChange.elapsed() < gIgnoreTouchTimeout.value();
    return updating || settling || state == int(DisplayState::Off) || state == int(DisplayState::UserAbsent);
}

void TouchDevice::dispatch(const TouchEvent& event)
{
    if (!validId(event.id))
        return;
    TouchInfo& info = mInfos[event.id];
    if (inputBlocked()) {
        ORBIS_INFO(QStringLiteral("blocking touch because no user present"));
        // A finger already down must not leave its view pressed forever.
        if (info.isLive())
            cancelTouch(info, event.id);
        return;
    }
    {
        DataValue::EventLocker lock(GUI_lastTouchTime);
        GUI_lastTouchTime.setValue(QDateTime::currentSecsSinceEpoch());
    }
    mEventTimeMs = event.timeMs;
    switch (event.state) {
    case TouchTouched:
        press(event.id, event.point);
        break;
    case TouchMoved:
        move(event.id, event.point);
        break;
    case TouchReleased:
        release(event.id, event.point);
        break;
    default:
        ORBIS_WARN(QStringLiteral("invalid touch state %1").arg(int(event.state)));
        break;
    }
}

void TouchDevice::press(int id, QPoint point)
{
    TouchInfo& info = mInfos[id];
    // The controller lost a release: end the old touch before starting the new one.
    if (info.isLive())
        cancelTouch(info, id);

    const bool multiTap =
        info.pressTimeMs >= 0 && mEventTimeMs - info.pressTimeMs <= kMultiTapMs &&
        PointUtils::manhattanDistance(info.pressPoint, point) <= 2 * info.dragDistanceThreshold;
    if (info.tapView) {
        // A held-back tap is either absorbed into this multi-tap or due now.
        if (multiTap) {
            info.tapView = nullptr;
            info.touchDelayTimer.stop();
            info.touchDelayTimerRunning = false;
        } else {
            touchDelayTimerExpired(id);
        }
    }
    if (multiTap) {
        ++info.tapCount;
    } else {
        info.tapCount = 1;
        info.tapTimeThreshold = gTapThreshold.value();
        info.dragDistanceThreshold = kDefaultDragThreshold;
    }
    info.previousPressTimeMs = info.pressTimeMs;
    info.pressTimeMs = mEventTimeMs;
    info.pressPoint = info.currentPoint = info.previousPoint = info.gesturePoint = point;
    info.state = TouchPending;
    info.previousState = TouchTouched;
    info.useTapTimer = false;
    info.tapAnimation = false;
    info.velocity.clear();
    info.velocity.addSample(mEventTimeMs, point);

    if (!mDevice)
        return;
    DisplayView* hit = mDevice->viewAtPoint(point);
    const int partner = findPartner(id, hit);
    DisplayView* target = partner >= 0 ? mInfos[partner].view : hit;
    if (DisplayView* focus = mDevice->touchFocus()) {
        if (focus->shouldClearTouchFocus(target))
            mDevice->clearTouchFocus();
    }
    if (!target || !target->touchable(id)) {
        log(id, "touched", point, nullptr);
        return;
    }
    if (target->isDestroying()) {
        Logger::logAssert(
            "!view->isDestroying()",
            QStringLiteral("Touch Event on a dereferenced view View: %1").arg(target->viewPath()), kLogSource,
            __LINE__);
        return;
    }
    if (partner >= 0) {
        TouchInfo& other = mInfos[partner];
        info.pair = partner;
        other.pair = id;
        const QPointF vector = pairVector(id);
        info.pairDistance = other.pairDistance = std::hypot(vector.x(), vector.y());
        info.pairAngle = other.pairAngle = PointUtils::vectorAngle(vector);
    }
    setView(id, target);
    if (info.view != target)
        return;
    log(id, "touched", point, target);
    if (gLogTouchedViews.value())
        ORBIS_INFO(QStringLiteral("Touched view: %1").arg(target->viewPath()));
    info.delivered = true;
    target->touched(id, point);
}

// A second finger joins a pinch or rotate when the view under the first one takes those
// gestures and the finger lands on the same view, or soon enough that the two presses
// belong to one gesture even if the second one lands outside the view.
int TouchDevice::findPartner(int id, DisplayView* hit)
{
    for (int other = 0; other < kMaxTouches; ++other) {
        const TouchInfo& candidate = mInfos[other];
        if (other == id || !candidate.isLive() || !candidate.view || candidate.pair != TouchInfo::kNoPair)
            continue;
        DisplayView* view = candidate.view;
        if (!view->hasTouchGesture(DisplayView::PinchGesture) &&
            !view->hasTouchGesture(DisplayView::RotateGesture))
            continue;
        if (hit == view || mEventTimeMs - candidate.pressTimeMs <= gGestureRecognitionTime.value())
            return other;
    }
    return -1;
}

void TouchDevice::move(int id, QPoint point)
{
    TouchInfo& info = mInfos[id];
    if (!info.isLive())
        return;
    info.velocity.addSample(mEventTimeMs, point);
    info.currentPoint = point;
    if (info.isPending()) {
        if (PointUtils::manhattanDistance(info.pressPoint, point) <= info.dragDistanceThreshold)
            return;
        info.previousState = info.state;
        info.state = TouchDragging;
    }
    DisplayView* view = info.view;
    if (view && point != info.previousPoint) {
        log(id, "moved", point, view);
        if (view->isDestroying()) {
            Logger::logAssert(
                "!view->isDestroying()",
                QStringLiteral("Touch Event on a dereferenced view View: %1").arg(view->viewPath()),
                kLogSource, __LINE__);
            unpair(info);
            info.reset();
            return;
        }
        handleGesture(id, view,
                      info.pair != TouchInfo::kNoPair ? DisplayView::PinchGesture : DisplayView::DragGesture);
    }
    info.previousPoint = point;
}

void TouchDevice::release(int id, QPoint point)
{
    TouchInfo& info = mInfos[id];
    if (!info.isLive())
        return;
    info.velocity.addSample(mEventTimeMs, point);
    info.currentPoint = point;
    QPointer<DisplayView> owner = info.view;
    log(id, "released", point, owner);
    if (owner && info.isPending() && mEventTimeMs - info.pressTimeMs <= info.tapTimeThreshold) {
        if (info.useTapTimer) {
            info.tapView = owner;
            info.tapPoint = point;
            info.startTouchDelayTimer();
        } else {
            handleGesture(id, owner, DisplayView::TapGesture);
        }
    }
    if (owner && info.view == owner)
        owner->released(id);
    if (info.view)
        info.view->decrementTouchCount();
    unpair(info);
    info.reset();
}

void TouchDevice::touchDelayTimerExpired(int id)
{
    if (!validId(id))
        return;
    TouchInfo& info = mInfos[id];
    info.touchDelayTimer.stop();
    info.touchDelayTimerRunning = false;
    QPointer<DisplayView> view = info.tapView;
    info.tapView = nullptr;
    if (view)
        deliverTap(id, view, info.tapPoint);
}

// Gestures

void TouchDevice::handleGesture(int id, DisplayView* view, DisplayView::TouchGesture gesture)
{
    if (!validId(id) || !view)
        return;
    TouchInfo& info = mInfos[id];
    switch (gesture) {
    case DisplayView::TapGesture:
        deliverTap(id, view, info.currentPoint);
        break;
    case DisplayView::DragGesture: {
        const QPoint step = info.currentPoint - info.previousPoint;
        DisplayView* taker = dragTaker(id, view);
        if (taker != view) {
            transferTouch(id, taker);
            if (info.view != taker)
                return;
            view = taker;
        }
        view->dragged(id, QSize(step.x(), step.y()));
        break;
    }
    case DisplayView::PinchGesture:
    case DisplayView::RotateGesture: {
        if (info.pair == TouchInfo::kNoPair)
            return;
        TouchInfo& other = mInfos[info.pair];
        const QPointF vector = pairVector(id);
        const double distance = std::hypot(vector.x(), vector.y());
        const double angle = PointUtils::vectorAngle(vector);
        const double scale = info.pairDistance > 0 ? distance / info.pairDistance : 1.0;
        const double turn = PointUtils::angleDifference(info.pairAngle, angle);
        info.pairDistance = other.pairDistance = distance;
        info.pairAngle = other.pairAngle = angle;
        info.gesturePoint = info.currentPoint;
        // A finger that took part in a pinch is no longer a candidate for a tap.
        if (other.isPending()) {
            other.previousState = other.state;
            other.state = TouchDragging;
        }
        QPointer<DisplayView> guard(view);
        if (view->hasTouchGesture(DisplayView::PinchGesture) && scale != 1.0)
            view->pinched(id, scale);
        if (guard && view->hasTouchGesture(DisplayView::RotateGesture) && turn != 0)
            view->rotated(id, turn);
        break;
    }
    }
}

// A view that does not take drags itself hands the finger on: to its delegate, or
// when it names none, to the nearest ancestor that requires drags (a button inside a
// list lets the list scroll). The delegate may hand on again, as a carousel inside a
// list hands vertical drags to the list.
DisplayView* TouchDevice::dragTaker(int id, DisplayView* view)
{
    for (int hops = 0; hops < kMaxDragHandOvers && !view->hasTouchGesture(DisplayView::DragGesture); ++hops) {
        DisplayView* next = view->dragGestureDelegate(id);
        if (!next && !view->requiresTouchGesture(DisplayView::DragGesture)) {
            next = view->parentView();
            while (next && !next->requiresTouchGesture(DisplayView::DragGesture))
                next = next->parentView();
        }
        if (!next || next == view)
            break;
        view = next;
    }
    return view;
}

void TouchDevice::deliverTap(int id, DisplayView* view, QPoint point)
{
    QPointer<DisplayView> guard(view);
    view->tapped(id, point);
    if (!guard)
        return;
    emit view->tapped(view);
    bool wanted;
    {
        DataValue::ConditionalLocker lock(GUI_tapAnimation);
        wanted = GUI_tapAnimation.toBool();
    }
    if ((wanted || mInfos[id].tapAnimation) && mDevice && mDevice->shouldShowTapAnimation(point))
        showTapAnimation(point);
}

void TouchDevice::showTapAnimation(QPoint point)
{
    new TapAnimationView(mDevice->overlays(), point);
}

// From the lower identifier of the pair to the higher, whichever finger moves, so that
// both fingers measure the same angle.
QPointF TouchDevice::pairVector(int id) const
{
    const int pair = mInfos[id].pair;
    const int first = qMin(id, pair);
    const int second = qMax(id, pair);
    return PointUtils::vectorBetween(mInfos[first].currentPoint, mInfos[second].currentPoint);
}

// Ownership

void TouchDevice::setView(int id, DisplayView* view)
{
    if (!validId(id))
        return;
    TouchInfo& info = mInfos[id];
    if (view && info.view == view && info.delivered) {
        ORBIS_WARN(QStringLiteral("Attempting to set touch on a view that already received it: %1")
                       .arg(view->viewPath()));
        return;
    }
    if (info.view && info.view != view)
        detachOwner(info, id);
    if (!view || info.view == view)
        return;
    info.view = view;
    info.delivered = false;
    view->incrementTouchCount();
    connect(view, &QObject::destroyed, this, &TouchDevice::viewDestroyed, Qt::UniqueConnection);
}

void TouchDevice::detachOwner(TouchInfo& info, int id)
{
    DisplayView* owner = info.view;
    if (!owner)
        return;
    info.view = nullptr;
    info.delivered = false;
    owner->decrementTouchCount();
    owner->touchCanceled(id);
}

void TouchDevice::clearView(int id)
{
    if (validId(id))
        detachOwner(mInfos[id], id);
}

void TouchDevice::clearView(DisplayView* view)
{
    for (int id = 0; id < kMaxTouches; ++id) {
        if (view && mInfos[id].view == view)
            detachOwner(mInfos[id], id);
    }
}

void TouchDevice::transferTouch(int id, DisplayView* to)
{
    if (!validId(id))
        return;
    TouchInfo& info = mInfos[id];
    if (!info.isLive() || !to)
        return;
    if (!to->touchable(id))
        ORBIS_WARN(QStringLiteral("Transfering touch to untouchable view: %1").arg(to->viewPath()));
    if (info.view != to)
        clearView(id);
    setView(id, to);
    if (info.view != to || info.delivered)
        return;
    info.delivered = true;
    to->touched(id, info.currentPoint);
}

bool TouchDevice::viewHasTouch(DisplayView* view, bool descendants)
{
    bool found = false;
    iterateTouchesForView(view, descendants, [&found](int, TouchState, const QPoint&) { found = true; });
    return found;
}

void TouchDevice::iterateTouchesForView(DisplayView* view, bool descendants,
                                        std::function<void(int, TouchState, const QPoint&)>&& visit)
{
    if (!view)
        return;
    for (int id = 0; id < kMaxTouches; ++id) {
        const TouchInfo& info = mInfos[id];
        if (!info.isLive() || !info.view)
            continue;
        if (info.view == view || (descendants && info.view->isChildOf(view)))
            visit(id, info.state, info.currentPoint);
    }
}

void TouchDevice::cancelTouch(TouchInfo& info, int id)
{
    detachOwner(info, id);
    unpair(info);
    info.reset();
}

void TouchDevice::cancelTouchEvents(DisplayView* view)
{
    for (int id = 0; id < kMaxTouches; ++id) {
        if (view && mInfos[id].view == view)
            cancelTouch(mInfos[id], id);
    }
}

void TouchDevice::unpair(TouchInfo& info)
{
    if (info.pair == TouchInfo::kNoPair)
        return;
    TouchInfo& other = mInfos[info.pair];
    other.pair = TouchInfo::kNoPair;
    // The remaining finger goes on as a plain drag from where it is now.
    other.previousPoint = other.currentPoint;
    info.pair = TouchInfo::kNoPair;
}

void TouchDevice::viewDestroyed(QObject* view)
{
    for (TouchInfo& info : mInfos) {
        if (static_cast<QObject*>(info.view) == view) {
            unpair(info);
            info.reset();
        }
    }
}

// Per-touch settings and queries

void TouchDevice::setTapTimeThreshold(int id, int ms)
{
    if (validId(id))
        mInfos[id].tapTimeThreshold = ms;
}

void TouchDevice::setDragDistanceThreshold(int id, int pixels)
{
    if (validId(id))
        mInfos[id].dragDistanceThreshold = pixels;
}

void TouchDevice::setTapAnimation(int id, bool wanted)
{
    if (validId(id))
        mInfos[id].tapAnimation = wanted;
}

void TouchDevice::setUseTapTimer(int id, bool use)
{
    if (validId(id))
        mInfos[id].useTapTimer = use;
}

TouchInfo* TouchDevice::info(int id)
{
    return validId(id) ? &mInfos[id] : nullptr;
}

int TouchDevice::getPair(int id)
{
    return validId(id) ? mInfos[id].pair : TouchInfo::kNoPair;
}

QPoint TouchDevice::getPairCenterPoint(int id)
{
    if (!validId(id))
        return QPoint();
    const TouchInfo& info = mInfos[id];
    if (info.pair == TouchInfo::kNoPair)
        return info.currentPoint;
    return PointUtils::midpoint(info.currentPoint, mInfos[info.pair].currentPoint).toPoint();
}

QPointF TouchDevice::getVelocity(int id)
{
    return validId(id) ? mInfos[id].velocity.velocity() : QPointF();
}

void TouchDevice::mouseEvent(QMouseEvent* event)
{
    mMouse->mouseEvent(event);
}

void TouchDevice::log(int id, const char* what, QPoint point, DisplayView* view)
{
    if (!mLogging)
        return;
    emit sendLog(QStringLiteral("touch %1 %2 at %3,%4 view %5")
                     .arg(id)
                     .arg(QLatin1String(what))
                     .arg(point.x())
                     .arg(point.y())
                     .arg(view ? view->viewPath() : QStringLiteral("none")));
}
