#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QMetaType>
#include <QtGlobal>

/// Insets of a box in pixels, in the order top, right, bottom, left. Used for the
/// content, label, image, touch and shadow paddings of views and for integer margins.
struct ORBIS_UI_EXPORT Padding
{
    qint32 top = 0;
    qint32 right = 0;
    qint32 bottom = 0;
    qint32 left = 0;

    constexpr Padding() = default;
    /// Implicit on purpose: a single number is the same inset on every side.
    constexpr Padding(qint32 all) : top(all), right(all), bottom(all), left(all) {}
    constexpr Padding(qint32 vertical, qint32 horizontal)
        : top(vertical), right(horizontal), bottom(vertical), left(horizontal)
    {}
    constexpr Padding(qint32 t, qint32 r, qint32 b, qint32 l) : top(t), right(r), bottom(b), left(l) {}

    constexpr bool isNull() const { return top == 0 && right == 0 && bottom == 0 && left == 0; }

    constexpr bool operator==(const Padding& o) const
    {
        return top == o.top && right == o.right && bottom == o.bottom && left == o.left;
    }
    constexpr bool operator!=(const Padding& o) const { return !(*this == o); }
};

Q_DECLARE_METATYPE(Padding)
