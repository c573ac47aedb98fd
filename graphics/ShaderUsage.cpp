#include "ShaderUsage.h"

#include "GLStateManager.h"
#include "RenderState.h"
#include "ShaderProgram.h"
#include "TextureCache.h"

#include <typeinfo>

namespace gfx {

namespace {
const char* const kSamplers[] = {"uTexture", "uTexture1"};
} // namespace

void ShaderUsage::setMatrix(const QMatrix4x4& matrix)
{
    mMatrix = matrix;
    mIdentity = false;
}

bool ShaderUsage::isIdentity() const
{
    if (mIdentity)
        return true;
    const QMatrix4x4 identity;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            if (mMatrix(row, column) != identity(row, column))
                return false;
    return true;
}

void ShaderUsage::setBlendFunc(GLenum source, GLenum destination)
{
    mBlendSource = source;
    mBlendDestination = destination;
}

bool ShaderUsage::equals(const ShaderUsage* other) const
{
    return other && typeid(*this) == typeid(*other) && mBuiltin == other->mBuiltin &&
           (mColor == other->mColor || (coloursVertices() && needsBlending() == other->needsBlending())) &&
           mTextures == other->mTextures && mOpacity == other->mOpacity && mMatrix == other->mMatrix &&
           mCustomShader == other->mCustomShader && mBlendSource == other->mBlendSource &&
           mBlendDestination == other->mBlendDestination;
}

ShaderProgram* ShaderUsage::shader(const RenderState&) const
{
    return ShaderCache::instance()->program(mCustomShader, mBuiltin);
}

bool ShaderUsage::bind(const RenderState& state)
{
    ShaderProgram* program = shader(state);
    if (!program || !program->isValid())
        return false;
    GLStateManager* gl = GLStateManager::instance();
    gl->glUseProgram(program->id());
    QMatrix4x4 matrix = state.projection() * state.matrix;
    if (!isIdentity())
        matrix *= mMatrix;
    program->setUniform("uMatrix", matrix);
    const float opacity = mOpacity * state.opacity;
    program->setUniform("uOpacity", opacity);
    if (mColor.isValid() && !coloursVertices())
        program->setUniform("uColor", mColor, opacity);
    TextureCache* cache = TextureCache::instance();
    bool bound = true;
    // The state cache tracks one unit: bind the others first and forget them, so
    // that unit 0 is bound last and its cached binding stays true.
    for (int unit = mTextures.size() - 1; unit >= 0; --unit) {
        gl->glActiveTexture(GLenum(GL_TEXTURE0 + unit));
        if (unit > 0)
            gl->forgetTextureBindings();
        bound = cache->bind(mTextures[unit]) && bound;
        if (unit > 0)
            gl->forgetTextureBindings();
        if (unit < 2)
            program->setUniform(kSamplers[unit], unit);
    }
    return bound;
}

} // namespace gfx
