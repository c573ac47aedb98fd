#include "HeapMeter.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <malloc.h>

HeapMeter::HeapMeter() : mBefore(heapBytes()) {}

size_t HeapMeter::heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

double HeapMeter::bytesPer(int instances) const
{
    return (double(heapBytes()) - double(mBefore)) / instances;
}

bool HeapMeter::report(double rowBytes, double itemBytes, int instances, const QString& jsonPath)
{
    QTextStream(stdout) << QStringLiteral("heap bytes per row        %1 (%2 instances)\n"
                                          "heap bytes per plain view %3 (%2 instances)\n")
                               .arg(rowBytes, 0, 'f', 1)
                               .arg(instances)
                               .arg(itemBytes, 0, 'f', 1);
    if (jsonPath.isEmpty())
        return true;
    QFile file(jsonPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QJsonObject root{{"rowBytes", rowBytes}, {"viewBytes", itemBytes}, {"instances", instances}};
    return file.write(QJsonDocument(root).toJson()) > 0;
}
