#include "ShaderCache.h"

#include "ShaderProgram.h"

namespace gfx {

namespace {
const char* const kVertexShader = R"(#version 100
attribute vec2 aPosition;
attribute vec2 aTexCoord;
uniform mat4 uMatrix;
varying vec2 vTexCoord;
void main()
{
    vTexCoord = aTexCoord;
    gl_Position = uMatrix * vec4(aPosition, 0.0, 1.0);
}
)";

const char* const kFragmentHeader = "#version 100\nprecision mediump float;\nvarying vec2 vTexCoord;\n";

// Colours are premultiplied and already carry the opacity.
QByteArray builtinFragment(ShaderCache::Builtin builtin)
{
    switch (builtin) {
    case ShaderCache::kColor:
        return "uniform vec4 uColor;\nvoid main() { gl_FragColor = uColor; }\n";
    case ShaderCache::kTexture:
        return "uniform sampler2D uTexture;\nuniform float uOpacity;\n"
               "void main() { gl_FragColor = texture2D(uTexture, vTexCoord) * uOpacity; }\n";
    case ShaderCache::kOpacifiedTexture:
        return "uniform sampler2D uTexture;\nuniform float uOpacity;\nuniform vec4 uColor;\n"
               "void main() {\n"
               "    vec4 t = texture2D(uTexture, vTexCoord) * uOpacity;\n"
               "    gl_FragColor = t + uColor * (1.0 - t.a);\n"
               "}\n";
    case ShaderCache::kMultiTexture:
        return "uniform sampler2D uTexture;\nuniform sampler2D uTexture1;\nuniform float uOpacity;\n"
               "uniform float uMix;\n"
               "void main() {\n"
               "    gl_FragColor = mix(texture2D(uTexture, vTexCoord), texture2D(uTexture1, vTexCoord), uMix)"
               " * uOpacity;\n"
               "}\n";
    case ShaderCache::kMaskTexture:
        return "uniform sampler2D uTexture;\nuniform sampler2D uTexture1;\nuniform float uOpacity;\n"
               "void main() {\n"
               "    gl_FragColor = texture2D(uTexture, vTexCoord) * texture2D(uTexture1, vTexCoord).a * "
               "uOpacity;\n"
               "}\n";
    case ShaderCache::kColorTexture:
        return "uniform sampler2D uTexture;\nuniform vec4 uColor;\n"
               "void main() { gl_FragColor = texture2D(uTexture, vTexCoord) * uColor; }\n";
    case ShaderCache::kAlphaTexture:
        return "uniform sampler2D uTexture;\nuniform vec4 uColor;\n"
               "void main() { gl_FragColor = uColor * texture2D(uTexture, vTexCoord).a; }\n";
    }
    return QByteArray();
}
} // namespace

ShaderCache::~ShaderCache()
{
    // Without a context the names are gone with it; only forget them.
    qDeleteAll(mPrograms);
}

ShaderProgram* ShaderCache::compiled(int id, const QByteArray& fragmentSource)
{
    auto it = mPrograms.constFind(id);
    if (it != mPrograms.constEnd())
        return *it;
    auto* program =
        new ShaderProgram(QStringLiteral("#%1").arg(id), kVertexShader, kFragmentHeader + fragmentSource);
    mPrograms.insert(id, program);
    return program;
}

ShaderProgram* ShaderCache::program(Builtin builtin)
{
    return compiled(builtin, builtinFragment(builtin));
}

ShaderProgram* ShaderCache::program(const CustomShaderKey& key, Builtin fallback)
{
    if (key.isNull() || !mCustomSources.contains(key.id()))
        return program(fallback);
    return compiled(key.id(), mCustomSources.value(key.id()));
}

CustomShaderKey ShaderCache::registerCustomShader(const QByteArray& fragmentSource)
{
    const int id = mNextCustomId++;
    mCustomSources.insert(id, fragmentSource);
    return CustomShaderKey(id);
}

bool ShaderCache::discards(const CustomShaderKey& key) const
{
    return !key.isNull() && mCustomSources.value(key.id()).contains("discard");
}

void ShaderCache::releaseAll()
{
    for (ShaderProgram* program : qAsConst(mPrograms))
        program->release();
    qDeleteAll(mPrograms);
    mPrograms.clear();
}

} // namespace gfx
