#pragma once

#include <QString>
#include <ostream>

// Readable failure output for Qt strings (and, through them, string lists).
inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}
