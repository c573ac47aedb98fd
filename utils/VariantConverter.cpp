#include "VariantConverter.h"

#include <QHash>
#include <memory>
#include <mutex>

namespace {

struct ConverterTable
{
    std::mutex mutex;
    QHash<int, std::shared_ptr<VariantConverter>> converters;
};

ConverterTable& table()
{
    static ConverterTable t;
    return t;
}

} // namespace

void VariantConverter::registerConverter(VariantConverter* converter)
{
    if (!converter)
        return;
    ConverterTable& t = table();
    std::lock_guard<std::mutex> lock(t.mutex);
    t.converters.insert(converter->typeId(), std::shared_ptr<VariantConverter>(converter));
}

const VariantConverter* VariantConverter::converterFor(int typeId)
{
    ConverterTable& t = table();
    std::lock_guard<std::mutex> lock(t.mutex);
    auto it = t.converters.constFind(typeId);
    return it == t.converters.cend() ? nullptr : it.value().get();
}

QString VariantConverter::convertToString(const QVariant& value)
{
    if (const VariantConverter* c = converterFor(value.userType()))
        return c->toString(value);
    return value.toString();
}

QVariant VariantConverter::convertFromString(int typeId, const QString& text)
{
    if (const VariantConverter* c = converterFor(typeId))
        return c->fromString(text);
    QVariant v(text);
    if (typeId != QMetaType::QString && !v.convert(typeId))
        return QVariant();
    return v;
}
