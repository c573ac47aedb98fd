#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TextureKeyData.h"

#include <qopengl.h>

namespace gfx {

// A texture that something else owns and renders into (a layer's framebuffer): the
// cache binds its name as it is and never uploads, stores or deletes it. The owner
// keeps the key valid for as long as display lists may draw it.
class ORBIS_UI_INTERNAL_EXPORT TextureKeyDataTarget : public TextureKeyData
{
public:
    TextureKeyDataTarget(GLuint texture, const QSize& size) : mTexture(texture), mSize(size) {}

    Type type() const override { return kTarget; }
    bool isNull() const override { return mTexture == 0; }
    quint64 cacheKey() const override { return mTexture; }
    QSize size() const override { return mSize; }
    GLuint texture() const { return mTexture; }

private:
    GLuint mTexture;
    QSize mSize;
};

} // namespace gfx
