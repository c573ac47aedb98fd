#pragma once

#include "InterpolatedValue.h"
#include "OrbisUIFrameworkExport.h"

/// The scroll position of one axis of a scrolling view: follows the finger while it
/// is down (with resistance past either end) and glides with friction and springs
/// back when it is let go. Positions run from 0 (start) down to minus the extent.
/// The owner advances it with update(false) once per frame.
class ORBIS_UI_EXPORT ScrollHandler : public InterpolatedValue
{
public:
    static constexpr float kScrollFriction = 0.01f; ///< 1% of the speed is left after a second
    static constexpr float kScrollSpring = 90.0f;
    static constexpr float kScrollDamping = 20.0f;
    static constexpr float kDoneThreshold = 2.0f;

    ScrollHandler(float drag = kScrollFriction, float k = kScrollSpring, float damping = kScrollDamping,
                  float doneThreshold = kDoneThreshold);

    void onTouchStart(float position);
    void onTouchMove(float delta);
    /// Velocity in units per second; ignored when the finger never moved.
    void onTouchEnd(float velocity);
    void startScrollAnimation(float velocity);
    double calculateUnderscrollPos() const;

    void reconfigureConstants(float drag, float k, float damping);
    void stopScrolling();
    void resetToBounds(bool animated);
    void resetToStart(bool animated);
    void setExtent(float extent);
    double extent() const { return mExtent; }
    void scroll(float delta, bool animated);

private:
    void moveTo(double target, bool animated);

    double mRaw = 0;
    double mExtent = 0;
    bool mTouching = false;
    float mDrag;
    float mK;
    float mDamping;
    float mDoneThreshold;
};
