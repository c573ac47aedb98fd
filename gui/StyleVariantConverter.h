#pragma once

#include "OrbisUIFrameworkExport.h"

#include "VariantConverter.h"

// Text form of Style variants: the style string, or the name of a named style.
class ORBIS_UI_INTERNAL_EXPORT StyleVariantConverter : public VariantConverter
{
public:
    int typeId() const override;
    QString toString(const QVariant& value) const override;
    QVariant fromString(const QString& text) const override;
};
