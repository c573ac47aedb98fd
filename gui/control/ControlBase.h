#pragma once

#include "DisplayView.h"
#include "ElapsedTimer.h"
#include "OrbisUIFrameworkExport.h"

#include <QFlags>
#include <QImage>

class DisplayImage;

/// The base of touchable controls. It turns the touch callbacks of its view into
/// control semantics: a pressed state that follows the finger out of and back into
/// the touch area (the view grown by its touch padding), an optional hold time after
/// which the control reports held once per press, a selected state, and one state
/// word from which subclasses draw their look. A control keeps its finger while the
/// finger moves over other views.
class ORBIS_UI_EXPORT ControlBase : public DisplayView
{
    Q_OBJECT

public:
    enum ControlState
    {
        Pressed = 1,
        Disabled = 2,
        Selected = 4
    };
    Q_DECLARE_FLAGS(ControlStates, ControlState)

    explicit ControlBase(DisplayView* parent);

    /// Virtual operations added to the view's, in slot order.
    virtual void setSelected(bool selected);
    /// Called after the state word changed, before stateChanged(ControlBase*).
    virtual void stateChanged();
    virtual void holdTimerExpired();
    virtual void startHoldTimer();
    virtual void invalidateHoldTimer();

    ControlStates state() const { return mState; }
    bool isPressed() const { return mPressed; }
    bool isSelected() const { return mSelected; }
    bool isTouchActive() const { return mTouchActive; }
    bool isInside() const { return mInside; }
    bool isHeld() const { return mHeld; }
    /// Whether the flags form a state a control can be in (only the three bits).
    static bool isValidState(ControlStates state);
    void updateState();

    /// Below 1 (the default is -1), a press is never held.
    void setHoldTime(int ms) { mHoldTime = ms; }
    int holdTime() const { return mHoldTime; }
    /// How long the last press was held when its timer stopped; -1 while one runs.
    int timeHeld() const { return mTimeHeld; }
    /// When set, leaving the touch area keeps the control pressed.
    void setStayPressedWhenDraggedOut(bool stay) { mStayPressedWhenDraggedOut = stay; }
    bool staysPressedWhenDraggedOut() const { return mStayPressedWhenDraggedOut; }

    /// The control takes touches only where the map's pixel is not transparent. The
    /// map is stretched over the view; the touch padding extends its edge pixels.
    /// Null clears it.
    void setTouchMap(DisplayImage* map);
    const QImage& touchMap() const { return mTouchMap; }
    /// `point` in the view's coordinates.
    bool touchMapContainsPoint(QPoint point);

    DisplayView* viewAtPoint(QPoint point) override;
    void touched(int touch, QPoint point) override;
    void released(int touch) override;
    void dragged(int touch, QSize delta) override;
    void tapped(int touch, QPoint point) override;
    void touchCanceled(int touch) override;
    void tick() override;
    void resized() override;
    void enabled() override;
    void disabled() override;
    QVariantMap toVariantMap() override;

    /// Disabled controls draw at this opacity.
    static constexpr qreal kDisabledOpacity = 0.4;

signals:
    void touched(ControlBase* control);
    void released(ControlBase* control);
    void tapped(ControlBase* control);
    void held(ControlBase* control);
    void draggedIn(ControlBase* control);
    void draggedOut(ControlBase* control);
    void selected(ControlBase* control);
    void stateChanged(ControlBase* control);
    void cancelTouched(ControlBase* control);

protected:
    /// The point of a live touch, in screen coordinates (the press point when the
    /// dispatcher does not know the touch).
    QPoint touchPoint(int touch) const;
    /// The view's rectangle in screen coordinates.
    QRect screenRect() const;
    /// A screen point in the view's coordinates.
    QPoint mapFromScreen(QPoint point) const;
    /// Ends the current press without a release (cancel, disable).
    void endPress();

private:
    bool insideTouchArea(QPoint screenPoint) const;

    ControlStates mState;
    bool mPressed = false;
    bool mSelected = false;
    bool mTouchActive = false;
    bool mInside = false;
    int mHoldTime = -1;
    int mTimeHeld = -1;
    ElapsedTimer mHoldTimer;
    bool mHeld = false;
    bool mStayPressedWhenDraggedOut = false;
    QImage mTouchMap;
    bool mInSetSelected = false;
    QPoint mPressPoint;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ControlBase::ControlStates)
