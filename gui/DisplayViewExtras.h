#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"

// The rarely used state of a view, allocated on first use.
struct ORBIS_UI_INTERNAL_EXPORT DisplayView::Extras
{
    QPointF mPivot;
    QVector3D mAxis = QVector3D(0, 0, 1);
    QMatrix4x4 mTransform;
    QRect mClip;
    QPoint mContentOffset;
    QRect mOpaque;
    Padding mTouchPadding;
    Padding mShadowPadding;
    Padding mLayoutMargin;
    DisplayView* mDragGestureDelegate = nullptr;
    DisplayImage mLayerMask;
    DisplayViewEffect* mEffect = nullptr;
    DisplayViewOverlay* mOverlay = nullptr;
    DisplayViewShadow* mShadow = nullptr;
    DisplayImage mBackgroundImage;
    SkinColor mBackgroundColor;
    double mBackgroundOpacity = 1.0;
    bool mStretchBackground = true;
    bool mOwnsLayoutAction = false;
    LayoutAction* mLayoutAction = nullptr;
    QRectF mLayoutResultRect;
    double mLayoutScale = 1.0;

    // A rule by which the view follows its parent's size.
    enum AutoResize : quint8
    {
        AutoRelative = 0x1,
        AutoWidth = 0x2,
        AutoHeight = 0x4
    };
    quint8 mAutoResize = 0;
    QRectF mAutoRelative;
    Padding mAutoMargins;

    float mScale = 1.0f;
    float mAngle = 0.0f;
    float mBrightness = 1.0f;
    DataValue* mValueSource = nullptr;
    std::unique_ptr<ViewBuffer> mLayer;
};
