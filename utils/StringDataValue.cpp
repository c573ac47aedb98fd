#include "StringDataValue.h"

StringDataValue::StringDataValue(const QString& name, const QString& initial, QObject* parent)
    : DataValue(name, initial, parent)
{}

void StringDataValue::emitChanged()
{
    DataValue::emitChanged();
    Q_EMIT stringValueChanged(this);
}
