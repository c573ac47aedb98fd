#pragma once

#include "OrbisUtilsExport.h"

#include <QString>
#include <QVariant>

/// Turns variants of one user type to and from text, for configuration values and
/// the view inspector. Types register a converter once; conversions look it up by
/// the variant's type id.
class ORBIS_UTILS_EXPORT VariantConverter
{
public:
    virtual ~VariantConverter() = default;
    virtual int typeId() const = 0;
    virtual QString toString(const QVariant& value) const = 0;
    virtual QVariant fromString(const QString& text) const = 0;

    /// Takes ownership. A second converter for the same type replaces the first.
    static void registerConverter(VariantConverter* converter);
    static const VariantConverter* converterFor(int typeId);

    /// Text of any variant: the registered converter, else QVariant's own conversion.
    static QString convertToString(const QVariant& value);
    static QVariant convertFromString(int typeId, const QString& text);
};
