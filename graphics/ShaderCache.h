#pragma once

#include "CustomShaderKey.h"
#include "OrbisUIFrameworkExport.h"

#include <QByteArray>
#include <QHash>
#include <Singleton.h>
#include <memory>

namespace gfx {

class ShaderProgram;

/// Compiles each program once, on first use, and keeps it for the context's life.
class ORBIS_UI_EXPORT ShaderCache
{
public:
    enum Builtin
    {
        kColor = 1,
        kTexture,
        kOpacifiedTexture,
        kMultiTexture,
        kMaskTexture,
        kColorTexture,
        kAlphaTexture,
        /// Gradients through a colour ramp texture; the masked ones take their
        /// coverage from the alpha of a second texture.
        kLinearGradient,
        kRadialGradient,
        kConicalGradient,
        kMaskedLinearGradient,
        kMaskedRadialGradient,
        kMaskedConicalGradient,
    };

    static ShaderCache* instance() { return Singleton<ShaderCache>::instance(); }
    ~ShaderCache();

    /// Programs that take their colour from the vertices rather than from uColor.
    static bool takesVertexColor(Builtin builtin) { return builtin == kColor || builtin == kAlphaTexture; }

    ShaderProgram* program(Builtin builtin);
    /// The custom program when `key` is set, else the builtin one.
    ShaderProgram* program(const CustomShaderKey& key, Builtin fallback);

    /// A fragment shader that sees the builtin uniforms it declares (uMatrix in the
    /// vertex stage; uTexture, uTexture1, uColor, uOpacity, uMix) and vTexCoord.
    CustomShaderKey registerCustomShader(const QByteArray& fragmentSource);
    /// Whether the custom shader may leave pixels undrawn ("discard").
    bool discards(const CustomShaderKey& key) const;

    int compiledCount() const { return mPrograms.size(); }
    /// Deletes every program; the context must be current (before it goes away).
    void releaseAll();

private:
    friend class Singleton<ShaderCache>;
    ShaderCache() = default;

    ShaderProgram* compiled(int id, const QByteArray& vertexSource, const QByteArray& fragmentSource);

    QHash<int, ShaderProgram*> mPrograms;
    QHash<int, QByteArray> mCustomSources;
    int mNextCustomId = 1000;
};

} // namespace gfx
