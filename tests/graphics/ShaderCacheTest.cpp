#include <AlphaTextureShaderUsage.h>
#include <ColorShaderUsage.h>
#include <CustomShaderUsage.h>
#include <RenderState.h>
#include <ShaderCache.h>
#include <ShaderProgram.h>
#include <TextureShaderUsage.h>

#include <gtest/gtest.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

TEST(ShaderCacheTest, ProgramsCompileOnceAndUniformsOnlyChangeWhenTheyDiffer)
{
    ScopedGLRecorder driver;
    ShaderCache* cache = ShaderCache::instance();
    cache->releaseAll();
    ShaderProgram* color = cache->program(ShaderCache::kColor);
    EXPECT_EQ(cache->program(ShaderCache::kColor), color);
    EXPECT_EQ(driver.count("glLinkProgram"), 1);
    const CustomShaderKey custom = cache->registerCustomShader("void main() { gl_FragColor = vec4(1.0); }\n");
    EXPECT_NE(cache->program(custom, ShaderCache::kColor), color);
    EXPECT_EQ(cache->program(CustomShaderKey(), ShaderCache::kColor), color);
    EXPECT_EQ(cache->compiledCount(), 2);

    // The colour travels in the vertices: another colour changes no uniform.
    ColorShaderUsage red(Qt::red);
    const RenderState state(QSize(10, 10));
    driver.reset();
    ASSERT_TRUE(red.bind(state));
    EXPECT_EQ(driver.count("glUniformMatrix4fv"), 1);
    EXPECT_EQ(driver.count("glUniform1f"), 1);
    ASSERT_TRUE(red.bind(state));
    ColorShaderUsage blue(Qt::blue);
    ASSERT_TRUE(blue.bind(state));
    blue.setOpacity(0.5f);
    ASSERT_TRUE(blue.bind(state));
    EXPECT_EQ(driver.count("glUseProgram"), 1);
    EXPECT_EQ(driver.count("glUniformMatrix4fv"), 1);
    EXPECT_EQ(driver.count("glUniform1f"), 2);
    EXPECT_EQ(driver.count("glUniform4f"), 0);
    // A custom shader still reads its colour from uColor.
    const CustomShaderKey uniform =
        cache->registerCustomShader("uniform vec4 uColor;\nvoid main() { gl_FragColor = uColor; }\n");
    CustomShaderUsage tinted(uniform, {}, Qt::red, false);
    ASSERT_TRUE(tinted.bind(state));
    EXPECT_EQ(driver.count("glUniform4f"), 1);
    cache->releaseAll();
    EXPECT_EQ(driver.count("glDeleteProgram"), 3);
}

TEST(ShaderCacheTest, UsagesAreEqualOnlyWithEqualState)
{
    const TextureKey none;
    ColorShaderUsage a(Qt::red), b(Qt::red), c(QColor(255, 0, 0, 254));
    EXPECT_TRUE(a.equals(&b));
    EXPECT_FALSE(a.equals(&c));
    // Colours that the vertices carry only matter where they decide blending; a
    // custom shader takes its colour as a uniform.
    const ColorShaderUsage blue(Qt::blue);
    EXPECT_TRUE(a.equals(&blue));
    const AlphaTextureShaderUsage redText(none, Qt::red), blueText(none, Qt::blue);
    EXPECT_TRUE(redText.equals(&blueText));
    const CustomShaderKey custom = ShaderCache::instance()->registerCustomShader("void main() {}\n");
    const CustomShaderUsage redCustom(custom, {}, Qt::red, false), blueCustom(custom, {}, Qt::blue, false);
    EXPECT_FALSE(redCustom.equals(&blueCustom));
    b.setOpacity(0.5f);
    EXPECT_FALSE(a.equals(&b));
    EXPECT_TRUE(b.needsBlending());
    QMatrix4x4 shifted;
    shifted.translate(1, 0);
    c = ColorShaderUsage(Qt::red);
    c.setMatrix(shifted);
    EXPECT_FALSE(a.equals(&c));
    c.setMatrix(QMatrix4x4());
    EXPECT_TRUE(c.isIdentity());
    // Compositions that read the destination always blend, opaque or not.
    a.setBlendFunc(GL_ONE, GL_ZERO);
    EXPECT_FALSE(a.needsBlending());
    a.setBlendFunc(GL_ZERO, GL_ZERO);
    EXPECT_TRUE(a.needsBlending());
    TextureShaderUsage texture(none, true);
    EXPECT_FALSE(texture.equals(&a));
    EXPECT_EQ(TextureShaderUsage::opacify(&a, Qt::white), nullptr);
}

} // namespace
