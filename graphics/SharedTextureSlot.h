#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TexCoordInsets.h"
#include "TextureKey.h"

#include <QExplicitlySharedDataPointer>
#include <QImage>
#include <QRect>
#include <QSharedData>
#include <memory>

namespace gfx {

class SharedTexturePage;

/// A place for one image on a page of a shared atlas texture, handed out by
/// SharedTextureManager. A value handle: copies, and the texture keys made from it,
/// share the place, which is given back once the last of them is gone (at the end
/// of that frame). A null slot holds nothing.
class ORBIS_UI_EXPORT SharedTextureSlot
{
public:
    /// The shared state of a slot: its page and its place on it.
    class Data : public QSharedData
    {
    public:
        Data(const std::shared_ptr<SharedTexturePage>& page, const QRect& rect, const QRect& outer);
        ~Data();

        std::shared_ptr<SharedTexturePage> page;
        /// The image's pixels inside the page, and the area reserved for it with
        /// its one-pixel border of repeated edge pixels.
        QRect rect;
        QRect outer;
        /// Bordered pixels waiting for the page's next bind.
        QImage pending;
    };

    SharedTextureSlot() = default;
    explicit SharedTextureSlot(Data* data) : d(data) {}

    bool isNull() const { return !d; }
    /// The image's place in the page texture, in pixels.
    QRect rect() const { return d ? d->rect : QRect(); }
    QSize pageSize() const;
    /// The texture coordinates of rect() as insets from the page's edges, for
    /// RenderItemBuilder::drawTexturedRect.
    TexCoordInsets insets() const;
    /// A key that binds the page and keeps the slot alive. Keys of slots on one
    /// page compare equal, so that items drawing from one page merge into one draw.
    TextureKey key() const;

    Data* data() const { return d.data(); }
    bool operator==(const SharedTextureSlot& o) const { return d == o.d; }

private:
    QExplicitlySharedDataPointer<Data> d;
};

} // namespace gfx
