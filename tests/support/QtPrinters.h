#pragma once

#include <QRectF>
#include <QString>
#include <ostream>

// Readable failure output for Qt strings (and, through them, string lists).
inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QRectF& rect, std::ostream* os)
{
    *os << "QRectF(" << rect.x() << ", " << rect.y() << ", " << rect.width() << " x " << rect.height() << ")";
}
