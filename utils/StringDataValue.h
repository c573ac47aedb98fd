#pragma once

#include "DataValue.h"
#include "OrbisUtilsExport.h"

/// A data value holding text; besides "valueChanged(DataValue*)" it emits
/// "stringValueChanged(StringDataValue*)".
class ORBIS_UTILS_EXPORT StringDataValue : public DataValue
{
    Q_OBJECT

public:
    explicit StringDataValue(const QString& name, const QString& initial = QString(),
                             QObject* parent = nullptr);

    QString stringValue() const { return value().toString(); }
    void setString(const QString& text) { setValue(text); }

Q_SIGNALS:
    void stringValueChanged(StringDataValue* value);

protected:
    void emitChanged() override;
};
