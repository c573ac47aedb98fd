#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRect>
#include <QString>

/// Painting helpers shared by every view, and the per-painter layout scale: the
/// factor by which a painter's content is scaled (the display's window scale, for
/// instance), which the drawing context uses to keep bitmaps and clips on whole
/// device pixels.
class ORBIS_UI_EXPORT Graphics
{
public:
    enum FitMode
    {
        Stretch = 0,   ///< fill the rectangle, ignoring the aspect ratio
        FitInside = 1, ///< largest size that fits, aspect kept, centred
        Cover = 2,     ///< smallest size that covers, aspect kept, centred
        Center = 3     ///< own size, centred
    };

    static double painterLayoutScale(const QPainter& painter);
    static void setPainterLayoutScale(const QPainter& painter, double scale);
    static void removePainterLayoutScale(const QPainter& painter);

    /// Mirroring counts as rotation: neither can be undone by dropping to device pixels.
    static bool isPainterRotated(const QPainter& painter);
    static bool isPainterScaled(const QPainter& painter);

    static QRect scaledRect(const QRect& rect, double scale);
    static QRect roundedScaledRect(const QRect& rect, double scale);

    static void drawText(QPainter& painter, const QRect& rect, QString text, int flags, QColor color);
    static void drawText(QPainter& painter, const QRect& rect, int flags, const QString& text,
                         const QColor& color, bool elide, bool multiLine, Qt::TextElideMode mode);
    /// Shrinks the font one point at a time until the text fits, not below minPointSize.
    /// Returns whether it fits.
    static bool fitText(QFont& font, const QRect& rect, QString text, int flags, int minPointSize);

    static QPixmap scaleImage(const QPixmap& pixmap, const QSize& size, int fitMode);
    static QRect fitImageToRect(const QSize& image, const QRect& rect, int fitMode);
    static void fitAndDrawImage(QPainter& painter, const QRect& rect, const QPixmap& pixmap, int fitMode);
    static void drawPixmap(QPainter& painter, const QRect& target, const QPixmap& pixmap,
                           const QRect& source);
    static QPixmap reflect(QPixmap pixmap, bool horizontal);
    static QPixmap rotate(const QPixmap& pixmap, int degrees);
};
