#include "KtxWriter.h"

#include <QtEndian>

namespace {
void put(QByteArray& out, quint32 v, bool swapped)
{
    char bytes[4];
    if (swapped)
        qToBigEndian(v, bytes);
    else
        qToLittleEndian(v, bytes);
    out.append(bytes, 4);
}

void pad(QByteArray& out)
{
    while (out.size() % 4)
        out.append('\0');
}
} // namespace

QByteArray KtxWriter::build() const
{
    static const char kIdentifier[12] = {'\xAB', 'K',    'T',  'X',  ' ',    '1',
                                         '1',    '\xBB', '\r', '\n', '\x1A', '\n'};
    QByteArray out(kIdentifier, 12);
    const int faces = levels.isEmpty() ? 1 : levels[0].size();
    for (quint32 v :
         {quint32(0x04030201), glType, glTypeSize, glFormat, glInternalFormat, glFormat, width, height,
          quint32(0), arrayElements, quint32(faces), quint32(levels.size()), quint32(keyValueData.size())})
        put(out, v, swapped);
    out += keyValueData;
    for (const QVector<QByteArray>& level : levels) {
        put(out, quint32(level.value(0).size()), swapped);
        for (const QByteArray& face : level) {
            out += face;
            pad(out);
        }
    }
    return out;
}
