#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QBrush>
#include <QMatrix>
#include <QPainter>
#include <QPixmap>

/// What view painting translates, clips and blits through. On a painter with a layout
/// scale and no rotation, clips, fills and pixmaps are placed on whole device pixels.
class ORBIS_UI_EXPORT DrawingContext
{
public:
    explicit DrawingContext(QPainter& painter);

    void save();
    void restore();
    void saveTransform();
    void restoreTransform();
    void translate(const QPoint& offset);
    void setClipRect(const QRect& rect);
    void fillRect(const QRect& rect, const QBrush& brush);
    void drawPixmap(const QRect& rect, const QPixmap& pixmap);

    bool isAligned() const { return mAligned; }
    /// Generous on purpose: the inclusive right and bottom edges are the ceilings of the
    /// mapped far edges, so a clip never cuts a partly covered pixel.
    static QRect alignedRect(const QRect& rect, const QMatrix& matrix);

private:
    QMatrix mMatrix;
    QPainter& mPainter;
    bool mAligned;
};
