#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TextureKeyData.h"

#include <QExplicitlySharedDataPointer>

namespace gfx {

/// A small shared handle on where a texture's pixels come from; render items hold
/// keys, never GL names.
class ORBIS_UI_EXPORT TextureKey
{
public:
    TextureKey() = default;
    explicit TextureKey(TextureKeyData* data) : d(data) {}

    bool isNull() const { return !d || d->isNull(); }
    TextureKeyData* data() const { return d.data(); }
    QSize size() const { return d ? d->size() : QSize(); }

    bool operator==(const TextureKey& o) const
    {
        if (d == o.d)
            return true;
        return d && o.d && *d == *o.d;
    }
    bool operator!=(const TextureKey& o) const { return !(*this == o); }

private:
    QExplicitlySharedDataPointer<TextureKeyData> d;
};

} // namespace gfx
