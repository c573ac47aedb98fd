#pragma once

#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>
#include <ostream>

// Readable failure output for Qt strings (and, through them, string lists).
inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}

// Sizes, points and rectangles as their numbers.
inline void PrintTo(const QSizeF& size, std::ostream* os)
{
    *os << size.width() << "x" << size.height();
}

inline void PrintTo(const QSize& size, std::ostream* os)
{
    *os << size.width() << "x" << size.height();
}

inline void PrintTo(const QPoint& point, std::ostream* os)
{
    *os << point.x() << "," << point.y();
}

inline void PrintTo(const QRect& rect, std::ostream* os)
{
    *os << rect.x() << "," << rect.y() << " " << rect.width() << "x" << rect.height();
}

inline void PrintTo(const QRectF& rect, std::ostream* os)
{
    *os << rect.x() << "," << rect.y() << " " << rect.width() << "x" << rect.height();
}
