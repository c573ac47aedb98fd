#include "StyleVariantConverter.h"

#include "Style.h"

int StyleVariantConverter::typeId() const
{
    return qMetaTypeId<Style>();
}

QString StyleVariantConverter::toString(const QVariant& value) const
{
    const Style style = value.value<Style>();
    return style.name().isEmpty() ? style.styleText() : style.name();
}

QVariant StyleVariantConverter::fromString(const QString& text) const
{
    return QVariant::fromValue(Style(text));
}
