#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QMatrix>
#include <QPainter>

/// Drops a scaled painter to device pixels for a moment, so that what is drawn is not
/// resampled by the layout scale. Does nothing for an unscaled or rotated painter.
class ORBIS_UI_EXPORT TransformFreeContext
{
public:
    explicit TransformFreeContext(QPainter& painter);

    void apply();
    void restore();
    /// A rectangle in the painter's coordinates mapped to device pixels (unchanged
    /// when inactive).
    QRect transformedRect(const QRect& rect) const;
    const QMatrix& matrix() const { return mMatrix; }
    bool isActive() const { return mActive; }

private:
    QPainter& mPainter;
    QMatrix mMatrix;
    bool mActive;
    bool mApplied = false;
};
