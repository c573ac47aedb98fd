#include "SharedTextureSlot.h"

#include "SharedTexturePage.h"
#include "TextureKeyDataShared.h"

namespace gfx {

SharedTextureSlot::Data::Data(const std::shared_ptr<SharedTexturePage>& owner, const QRect& inner,
                              const QRect& reserved)
    : page(owner), rect(inner), outer(reserved)
{}

SharedTextureSlot::Data::~Data()
{
    page->slotGone(this);
}

QSize SharedTextureSlot::pageSize() const
{
    return d ? d->page->size() : QSize();
}

TexCoordInsets SharedTextureSlot::insets() const
{
    if (!d)
        return TexCoordInsets();
    const float w = d->page->size().width();
    const float h = d->page->size().height();
    const QRect& r = d->rect;
    return {r.x() / w, r.y() / h, (w - r.x() - r.width()) / w, (h - r.y() - r.height()) / h};
}

TextureKey SharedTextureSlot::key() const
{
    return d ? TextureKey(new TextureKeyDataShared(*this)) : TextureKey();
}

} // namespace gfx
