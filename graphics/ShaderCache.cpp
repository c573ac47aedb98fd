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

// The colour arrives as 8-bit channels, not normalised, and is premultiplied here
// in the order the uniform colour of the other programs is.
const char* const kColoredVertexShader = R"(#version 100
attribute vec2 aPosition;
attribute vec2 aTexCoord;
attribute vec4 aColor;
uniform mat4 uMatrix;
uniform float uOpacity;
varying vec2 vTexCoord;
varying vec4 vColor;
void main()
{
    vTexCoord = aTexCoord;
    float a = aColor.a / 255.0 * uOpacity;
    vColor = vec4(aColor.rgb / 255.0 * a, a);
    gl_Position = uMatrix * vec4(aPosition, 0.0, 1.0);
}
)";

const char* const kFragmentHeader = "#version 100\nprecision mediump float;\nvarying vec2 vTexCoord;\n";

// A position along the gradient picks one of the ramp's 1024 entries, as the
// raster engine's colour table does: spread 0 pads, 1 repeats, 2 reflects.
// Positions come from the pixel's centre in the window rather than from an
// interpolated varying, so that a pixel gets the same colour whichever triangle
// draws it (the optimiser cuts areas into other triangles). High precision where
// there is any: a ramp step is a fraction of a pixel on a wide gradient.
const char* const kGradientFragmentHeader = R"(#version 100
#ifdef GL_FRAGMENT_PRECISION_HIGH
precision highp float;
#else
precision mediump float;
#endif
varying vec2 vTexCoord;
uniform mat4 uWindowToGradient;
uniform sampler2D uTexture;
uniform sampler2D uTexture1;
uniform float uOpacity;
uniform float uSpread;
uniform vec4 uGradient;
uniform vec4 uRadial;
const float kRampSize = 1024.0;
vec4 shade(vec4 color)
{
#ifdef MASKED
    color *= texture2D(uTexture1, vTexCoord).a;
#endif
    return color * uOpacity;
}
vec4 ramp(float index)
{
    if (uSpread < 0.5) {
        index = clamp(index, 0.0, kRampSize - 1.0);
    } else if (uSpread < 1.5) {
        index = mod(index, kRampSize);
    } else {
        index = mod(index, 2.0 * kRampSize);
        if (index >= kRampSize)
            index = 2.0 * kRampSize - 1.0 - index;
    }
    return shade(texture2D(uTexture, vec2((index + 0.5) / kRampSize, 0.5)));
}
vec2 gradientPosition()
{
    return (uWindowToGradient * vec4(gl_FragCoord.xy, 0.0, 1.0)).xy;
}
// The table entry of a position rounded as the raster engine rounds it.
float entry(float t)
{
    float x = t * (kRampSize - 1.0) + 0.5;
    return x < 0.0 ? -floor(-x) : floor(x);
}
)";

QByteArray gradientFragment(ShaderCache::Builtin builtin)
{
    switch (builtin) {
    case ShaderCache::kLinearGradient:
    case ShaderCache::kMaskedLinearGradient:
        // uGradient: start, and the direction divided by the length squared.
        return "void main() {\n"
               "    float t = dot(gradientPosition() - uGradient.xy, uGradient.zw);\n"
               "    gl_FragColor = ramp(floor(t * (kRampSize - 1.0) + 0.5));\n"
               "}\n";
    case ShaderCache::kRadialGradient:
    case ShaderCache::kMaskedRadialGradient:
        // uGradient: focal point, centre minus focal point; uRadial: radius minus
        // focal radius, focal radius, a, and whether the cone is extended (where
        // positions outside it stay transparent). Where the focal point lies
        // outside the outer circle (a < 0) the nearer circle through the point
        // gives its colour, as in the raster engine.
        return "void main() {\n"
               "    float a = uRadial.z;\n"
               "    if (abs(a) < 1e-12) { gl_FragColor = ramp(0.0); return; }\n"
               "    vec2 r = gradientPosition() - uGradient.xy;\n"
               "    float b = 2.0 * (uRadial.x * uRadial.y + dot(r, uGradient.zw));\n"
               "    float det = b * b - 4.0 * a * (uRadial.y * uRadial.y - dot(r, r));\n"
               "    if (det < 0.0) {\n"
               "        if (uRadial.w > 0.5) { gl_FragColor = vec4(0.0); return; }\n"
               "        det = 0.0;\n"
               "    }\n"
               "    float w = sqrt(det) / (2.0 * abs(a)) - b / (2.0 * a);\n"
               "    if (uRadial.w > 0.5 && uRadial.y + uRadial.x * w < 0.0) { gl_FragColor = vec4(0.0); "
               "return; }\n"
               "    gl_FragColor = ramp(entry(w));\n"
               "}\n";
    case ShaderCache::kConicalGradient:
    case ShaderCache::kMaskedConicalGradient:
        // uGradient: centre, start angle in radians. Always repeats.
        return "void main() {\n"
               "    vec2 r = gradientPosition() - uGradient.xy;\n"
               "    float angle = (r.x == 0.0 && r.y == 0.0 ? 0.0 : atan(r.y, r.x)) + uGradient.z;\n"
               "    gl_FragColor = ramp(entry(1.0 - angle / 6.28318530718));\n"
               "}\n";
    default:
        return QByteArray();
    }
}

bool isMaskedGradient(ShaderCache::Builtin builtin)
{
    return builtin >= ShaderCache::kMaskedLinearGradient;
}

bool isGradient(ShaderCache::Builtin builtin)
{
    return builtin >= ShaderCache::kLinearGradient;
}

// Colours are premultiplied and already carry the opacity.
QByteArray builtinFragment(ShaderCache::Builtin builtin)
{
    switch (builtin) {
    case ShaderCache::kColor:
        return "varying vec4 vColor;\nvoid main() { gl_FragColor = vColor; }\n";
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
        return "uniform sampler2D uTexture;\nvarying vec4 vColor;\n"
               "void main() { gl_FragColor = vColor * texture2D(uTexture, vTexCoord).a; }\n";
    default:
        return QByteArray();
    }
}
} // namespace

ShaderCache::~ShaderCache()
{
    // Without a context the names are gone with it; only forget them.
    qDeleteAll(mPrograms);
}

ShaderProgram* ShaderCache::compiled(int id, const QByteArray& vertexSource, const QByteArray& fragmentSource)
{
    auto it = mPrograms.constFind(id);
    if (it != mPrograms.constEnd())
        return *it;
    auto* program = new ShaderProgram(QStringLiteral("#%1").arg(id), vertexSource, fragmentSource);
    mPrograms.insert(id, program);
    return program;
}

ShaderProgram* ShaderCache::program(Builtin builtin)
{
    if (!isGradient(builtin))
        return compiled(builtin, takesVertexColor(builtin) ? kColoredVertexShader : kVertexShader,
                        kFragmentHeader + builtinFragment(builtin));
    const QByteArray defines = isMaskedGradient(builtin) ? "#define MASKED\n" : "";
    // The defines must follow the #version line.
    QByteArray header = kGradientFragmentHeader;
    header.insert(header.indexOf('\n') + 1, defines);
    return compiled(builtin, kVertexShader, header + gradientFragment(builtin));
}

ShaderProgram* ShaderCache::program(const CustomShaderKey& key, Builtin fallback)
{
    if (key.isNull() || !mCustomSources.contains(key.id()))
        return program(fallback);
    return compiled(key.id(), kVertexShader, kFragmentHeader + mCustomSources.value(key.id()));
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
