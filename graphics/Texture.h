#pragma once

#include "OrbisUIFrameworkExport.h"

#include "TextureFeature.h"

#include <QByteArray>
#include <QImage>
#include <QOpenGLContextGroup>
#include <QPointer>
#include <QSize>
#include <qopengl.h>

namespace gfx {

/// A GL texture owned by its object: created on the GUI thread by the first
/// allocation, and handed to the texture cache for deletion at the end of the frame
/// when the object goes, so that a display list drawn in this frame still finds it.
/// Formats are the ES 2 ones: GL_ALPHA, GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB and
/// GL_RGBA; colours are uploaded premultiplied. Misuse is reported and does nothing.
class ORBIS_UI_EXPORT Texture
{
public:
    virtual ~Texture();
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    GLuint id() const { return mId; }
    GLenum target() const { return mTarget; }
    GLenum format() const { return mFormat; }
    QSize size() const { return mSize; }
    /// Bytes of storage on the GPU (counted with the other tracked textures).
    quint64 bytes() const { return mBytes; }
    bool isCreated() const { return mId != 0; }

    /// Binds through the GL state cache on the current unit; false when there is
    /// nothing to bind.
    virtual bool bind() const = 0;

    static int bytesPerPixel(GLenum format);
    /// `image` as tightly packed rows of `format`.
    static QByteArray pixels(const QImage& image, GLenum format);

protected:
    Texture(GLenum target, const char* logSource);

    /// Creates the GL name on first use, with sampling set from `features`.
    bool ensureCreated(TextureFeatures features);
    bool onGuiThread() const;
    bool checkFormat(GLenum format) const;
    /// Allocated storage has one level: a mipmapped filter would leave it incomplete.
    static TextureFeatures withoutMipmaps(TextureFeatures features)
    {
        return features & ~TextureFeatures(TextureFeature::Mipmaps);
    }
    /// Records new storage, replacing what was counted before.
    void setStorage(const QSize& size, GLenum format, quint64 bytes);
    /// Whether `image` fits at `at` inside storage of `area`; reported when not.
    bool fits(const QPoint& at, const QImage& image, const QSize& area) const;

    const char* mLogSource;

private:
    GLenum mTarget;
    GLuint mId = 0;
    /// The contexts the name belongs to: once they are gone it is nobody's to delete.
    QPointer<QOpenGLContextGroup> mGroup;
    bool mMadeInContext = false;
    GLenum mFormat = GL_RGBA;
    QSize mSize;
    quint64 mBytes = 0;
};

} // namespace gfx
