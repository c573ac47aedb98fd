#pragma once

#include "DisplayView.h"

// The rarely used state of a view, allocated on first use.
struct DisplayView::Extras
{
    QPointF mPivot;
    QVector3D mAxis = QVector3D(0, 0, 1);
    QMatrix4x4 mTransform;
    QRect mClip;
    QRect mOpaque;
    Padding mTouchPadding;
    Padding mShadowPadding;
    Padding mLayoutMargin;
    DisplayView* mDragGestureDelegate = nullptr;
    QPixmap mLayerMask;
    DisplayViewEffect* mEffect = nullptr;
    DisplayViewOverlay* mOverlay = nullptr;
    DisplayViewShadow* mShadow = nullptr;
    QPixmap mBackgroundImage;
    SkinColor mBackgroundColor;
    double mBackgroundOpacity = 1.0;
    bool mStretchBackground = true;
    bool mOwnsLayoutAction = false;
    LayoutAction* mLayoutAction = nullptr;
    QRectF mLayoutResultRect;
    double mLayoutScale = 1.0;
};
