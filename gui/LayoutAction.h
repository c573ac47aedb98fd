#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QRectF>

class DisplayView;

/// Decides how a view takes a new layout frame, e.g. by animating to it. Runs with the
/// layout animator active, so the animated setters it calls are legitimate.
class ORBIS_UI_EXPORT LayoutAction
{
public:
    virtual ~LayoutAction() = default;
    virtual void apply(DisplayView* view, const QRectF& from, const QRectF& to) = 0;

    static bool isAnimatorActive() { return sActive > 0; }

private:
    friend class DisplayView;
    static inline int sActive = 0;
};
