#include "SoakScale.h"

#include <QByteArray>
#include <QtGlobal>

bool soakIsLong()
{
    return qgetenv("ORBIS_SOAK") == "long";
}

int soakCount(int shortCount, int longCount)
{
    return soakIsLong() ? longCount : shortCount;
}
