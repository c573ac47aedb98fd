#include <ColorShaderUsage.h>
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

    ColorShaderUsage red(Qt::red);
    const RenderState state(QSize(10, 10));
    driver.reset();
    ASSERT_TRUE(red.bind(state));
    EXPECT_EQ(driver.count("glUniformMatrix4fv"), 1);
    EXPECT_EQ(driver.count("glUniform4f"), 1);
    ASSERT_TRUE(red.bind(state));
    ColorShaderUsage blue(Qt::blue);
    ASSERT_TRUE(blue.bind(state));
    EXPECT_EQ(driver.count("glUseProgram"), 1);
    EXPECT_EQ(driver.count("glUniformMatrix4fv"), 1);
    EXPECT_EQ(driver.count("glUniform4f"), 2);
    cache->releaseAll();
    EXPECT_EQ(driver.count("glDeleteProgram"), 2);
}

TEST(ShaderCacheTest, UsagesAreEqualOnlyWithEqualState)
{
    const TextureKey none;
    ColorShaderUsage a(Qt::red), b(Qt::red), c(QColor(255, 0, 0, 254));
    EXPECT_TRUE(a.equals(&b));
    EXPECT_FALSE(a.equals(&c));
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
