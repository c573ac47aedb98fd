#pragma once

#include "CustomShaderKey.h"
#include "OrbisUIFrameworkExport.h"
#include "ShaderCache.h"
#include "TextureKey.h"

#include <QColor>
#include <QMatrix4x4>
#include <QVector>
#include <qopengl.h>

namespace gfx {

class ShaderProgram;
struct RenderState;

/// The program a render item draws with, its uniforms and textures, and the item's
/// model matrix. Colours are premultiplied when they reach the shader.
class ORBIS_UI_EXPORT ShaderUsage
{
public:
    explicit ShaderUsage(ShaderCache::Builtin builtin, const QVector<TextureKey>& textures = {},
                         const QColor& color = QColor())
        : mBuiltin(builtin), mColor(color), mTextures(textures)
    {}
    virtual ~ShaderUsage() = default;

    /// Whether items drawn with `other` can share one draw with this one.
    virtual bool equals(const ShaderUsage* other) const;
    /// Makes the program current with its uniforms and textures. False when there
    /// is nothing to draw (no program, or a texture without pixels).
    virtual bool bind(const RenderState& state);
    virtual bool needsBlending() const = 0;
    virtual ShaderProgram* shader(const RenderState& state) const;

    float opacity() const { return mOpacity; }
    void setOpacity(float opacity) { mOpacity = opacity; }
    const QMatrix4x4& matrix() const { return mMatrix; }
    void setMatrix(const QMatrix4x4& matrix);
    /// True when the matrix was never set, or equals the identity element by element.
    bool isIdentity() const;
    const CustomShaderKey& customShader() const { return mCustomShader; }
    void setCustomShader(const CustomShaderKey& key) { mCustomShader = key; }
    /// Blend factors for premultiplied colours (source over by default).
    GLenum blendSource() const { return mBlendSource; }
    GLenum blendDestination() const { return mBlendDestination; }
    void setBlendFunc(GLenum source, GLenum destination);
    /// Whether the blend factors read the destination even for opaque sources (any
    /// composition other than source-over and source): such usages always blend.
    bool blendReadsDestination() const
    {
        return mBlendSource != GL_ONE ||
               (mBlendDestination != GL_ONE_MINUS_SRC_ALPHA && mBlendDestination != GL_ZERO);
    }
    const QColor& color() const { return mColor; }
    /// Whether the program takes the colour from the vertices: usages that differ
    /// only in colour then draw together.
    bool coloursVertices() const { return mCustomShader.isNull() && ShaderCache::takesVertexColor(mBuiltin); }
    const QVector<TextureKey>& textures() const { return mTextures; }
    /// Keeps the textures of a usage merged into this one: keys that compare equal
    /// may still be different objects (slots on one shared page) whose pixels must
    /// live as long as the merged geometry.
    void retainTexturesOf(const ShaderUsage& merged)
    {
        mRetained += merged.mTextures;
        mRetained += merged.mRetained;
    }

protected:
    ShaderUsage(const ShaderUsage&) = default;

    ShaderCache::Builtin mBuiltin;
    QColor mColor;
    QVector<TextureKey> mTextures;

private:
    QVector<TextureKey> mRetained;
    float mOpacity = 1.0f;
    QMatrix4x4 mMatrix;
    bool mIdentity = true;
    CustomShaderKey mCustomShader;
    GLenum mBlendSource = GL_ONE;
    GLenum mBlendDestination = GL_ONE_MINUS_SRC_ALPHA;
};

} // namespace gfx
