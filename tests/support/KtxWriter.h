#pragma once

#include <QByteArray>
#include <QVector>

// Builds KTX 1.1 files for tests: each level's faces are given as raw bytes.
struct KtxWriter
{
    quint32 glType = 0x1401; // GL_UNSIGNED_BYTE
    quint32 glTypeSize = 1;
    quint32 glFormat = 0x1908; // GL_RGBA
    quint32 glInternalFormat = 0x1908;
    quint32 width = 1;
    quint32 height = 1;
    quint32 arrayElements = 0;
    bool swapped = false;
    QByteArray keyValueData;
    // levels[level][face]
    QVector<QVector<QByteArray>> levels;

    QByteArray build() const;
};
