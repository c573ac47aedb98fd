#include <GLStateManager.h>
#include <LogCapture.h>
#include <QOpenGLContext>

#include <gtest/gtest.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

class GLStateManagerTest : public ::testing::Test
{
protected:
    void SetUp() override { mDriver.setLogging(true); }

    ScopedGLRecorder mDriver;
    GLStateManager* mManager = GLStateManager::instance();
};

TEST_F(GLStateManagerTest, RedundantRequestsStopAtTheCache)
{
    const quint64 requests = mManager->requests();
    const quint64 forwarded = mManager->forwarded();
    mManager->glEnable(GL_BLEND);
    mManager->glEnable(GL_BLEND);
    mManager->glDisable(GL_BLEND);
    mManager->glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    mManager->glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    mManager->glBlendFunc(GL_ONE, GL_ZERO);
    mManager->glUseProgram(7);
    mManager->glUseProgram(7);
    mManager->glActiveTexture(GL_TEXTURE1);
    mManager->glActiveTexture(GL_TEXTURE1);
    mManager->glBindTexture2D(3);
    mManager->glBindTexture2D(3);
    mManager->glBindTextureCubeMap(3);
    mManager->glBindBufferArray(9);
    mManager->glBindBufferArray(9);
    mManager->glScissor(1, 2, 3, 4);
    mManager->glScissor(1, 2, 3, 4);
    mManager->glScissor(1, 2, 3, 5);
    EXPECT_EQ(mDriver.log(),
              QStringList({"glEnable(3042)", "glDisable(3042)", "glBlendFunc(1, 771)", "glBlendFunc(1, 0)",
                           "glUseProgram(7)", "glActiveTexture(33985)", "glBindTexture(3553, 3)",
                           "glBindTexture(34067, 3)", "glBindBuffer(34962, 9)", "glScissor(1, 2, 3, 4)",
                           "glScissor(1, 2, 3, 5)"}));
    EXPECT_EQ(mManager->requests() - requests, 18u);
    EXPECT_EQ(mManager->forwarded() - forwarded, 11u);
    const GLScissorBox box = mManager->state().scissor.value;
    EXPECT_EQ(box.x2, 3);
    EXPECT_EQ(box.y2, 6);
}

TEST_F(GLStateManagerTest, OnlyTheSixCapabilitiesAreCached)
{
    for (GLenum cap : {GLenum(GL_STENCIL_TEST), GLenum(GL_SCISSOR_TEST), GLenum(GL_MULTISAMPLE_EXT),
                       GLenum(GL_BLEND), GLenum(GL_CULL_FACE), GLenum(GL_DEPTH_TEST)}) {
        mManager->glEnable(cap);
        mManager->glEnable(cap);
    }
    EXPECT_EQ(mDriver.count("glEnable"), 6);
    mManager->glEnable(GL_POLYGON_OFFSET_FILL);
    mManager->glEnable(GL_POLYGON_OFFSET_FILL);
    mManager->glDisable(GL_DITHER);
    mManager->glDisable(GL_DITHER);
    EXPECT_EQ(mDriver.count("glEnable"), 8);
    EXPECT_EQ(mDriver.count("glDisable"), 2);
}

TEST_F(GLStateManagerTest, AttributePointersForceFloatNormalisationAndCacheFiveSlots)
{
    const void* p = reinterpret_cast<const void*>(16);
    mManager->glVertexAttribPointer(0, 2, GL_FLOAT, GL_TRUE, 16, p);
    mManager->glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 16, p);
    mManager->glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 16, p);
    mManager->glVertexAttribPointer(4, 2, GL_FLOAT, GL_FALSE, 16, p);
    mManager->glVertexAttribPointer(4, 2, GL_FLOAT, GL_FALSE, 16, p);
    mManager->glVertexAttribPointer(5, 2, GL_FLOAT, GL_TRUE, 16, p);
    mManager->glVertexAttribPointer(5, 2, GL_FLOAT, GL_TRUE, 16, p);
    mManager->glEnableVertexAttribArray(1);
    mManager->glEnableVertexAttribArray(1);
    mManager->glDisableVertexAttribArray(1);
    mManager->glEnableVertexAttribArray(6);
    mManager->glEnableVertexAttribArray(6);
    EXPECT_EQ(mDriver.log(), QStringList({"glVertexAttribPointer(0, 2, 5126, 0, 16, 16)",
                                          "glVertexAttribPointer(0, 3, 5126, 0, 16, 16)",
                                          "glVertexAttribPointer(4, 2, 5126, 0, 16, 16)",
                                          "glVertexAttribPointer(5, 2, 5126, 0, 16, 16)",
                                          "glVertexAttribPointer(5, 2, 5126, 0, 16, 16)",
                                          "glEnableVertexAttribArray(1)", "glDisableVertexAttribArray(1)",
                                          "glEnableVertexAttribArray(6)", "glEnableVertexAttribArray(6)"}));
}

TEST_F(GLStateManagerTest, ClearToInvalidLetsTheNextRequestThrough)
{
    mManager->glUseProgram(4);
    mManager->glEnable(GL_SCISSOR_TEST);
    mManager->glClearColor(0, 0, 0, 1);
    mManager->clearToInvalid();
    mManager->glUseProgram(4);
    mManager->glEnable(GL_SCISSOR_TEST);
    mManager->glClearColor(0, 0, 0, 1);
    EXPECT_EQ(mDriver.count("glUseProgram"), 2);
    EXPECT_EQ(mDriver.count("glEnable"), 2);
    EXPECT_EQ(mDriver.count("glClearColor"), 2);
}

TEST_F(GLStateManagerTest, ClearColorReachesTheDriverOnlyWhenItChanges)
{
    mManager->glClearColor(0, 0, 0, 1);
    mManager->glClearColor(0, 0, 0, 1);
    mManager->glClearColor(0, 0, 0, 0);
    mManager->glClearColor(0.5f, 0, 0, 0);
    EXPECT_EQ(mDriver.count("glClearColor"), 3);
}

TEST_F(GLStateManagerTest, ForgottenTextureBindingsReachTheDriverAgain)
{
    mManager->glBindTexture2D(5);
    mManager->forgetTextureBindings();
    mManager->glBindTexture2D(5);
    mManager->glUseProgram(1);
    EXPECT_EQ(mDriver.count("glBindTexture"), 2);
}

TEST_F(GLStateManagerTest, ReadStoresTheBlendEquationAsTheBlendCapability)
{
    mDriver.setQueryResult(GL_BLEND, {0});
    mDriver.setQueryResult(GL_BLEND_EQUATION, {GL_FUNC_ADD});
    mDriver.setQueryResult(GL_CURRENT_PROGRAM, {12});
    mDriver.setQueryResult(GL_BLEND_SRC_RGB, {GL_SRC_ALPHA});
    mDriver.setQueryResult(GL_STENCIL_FAIL, {GL_KEEP});
    mDriver.setQueryResult(GL_STENCIL_PASS_DEPTH_PASS, {GL_REPLACE});
    mDriver.setQueryResult(GL_STENCIL_PASS_DEPTH_FAIL, {GL_INCR});
    mDriver.setQueryResult(GL_SCISSOR_BOX, {10, 20, 30, 40});
    mDriver.setQueryResult(GLCallRecorder::attribQuery(2, GL_VERTEX_ATTRIB_ARRAY_ENABLED), {1});
    mDriver.setQueryResult(GLCallRecorder::attribQuery(2, GL_VERTEX_ATTRIB_ARRAY_POINTER), {64});
    GLState state;
    state.read();
    EXPECT_TRUE(state.blend.valid);
    EXPECT_TRUE(state.blend.value);
    EXPECT_FALSE(state.blendEquation.valid);
    EXPECT_FALSE(state.cullFace.valid);
    EXPECT_FALSE(state.arrayBuffer.valid);
    EXPECT_EQ(state.program.value, 12u);
    EXPECT_EQ(state.blendSrc.value, GLenum(GL_SRC_ALPHA));
    EXPECT_EQ(state.stencilDepthPass.value, GLenum(GL_REPLACE));
    EXPECT_EQ(state.stencilDepthFail.value, GLenum(GL_INCR));
    EXPECT_TRUE(state.attribs[2].enabled.value);
    EXPECT_EQ(state.attribs[2].pointer.value, 64u);
    EXPECT_TRUE(state.scissor.holds(GLScissorBox{10, 20, 39, 59}));
}

TEST_F(GLStateManagerTest, ApplyKeepsItsTwoQuirksAndItsOrder)
{
    GLState state;
    state.cullFace.set(true);
    state.blend.set(false);
    state.blendSrc.set(GL_ONE);
    state.blendEquation.set(GL_FUNC_ADD);
    state.program.set(3);
    state.stencilFail.set(GL_KEEP);
    state.stencilDepthPass.set(GL_REPLACE);
    state.stencilDepthFail.set(GL_INCR);
    state.texture2D.set(8);
    state.arrayBuffer.set(2);
    state.attribs[1].enabled.set(true);
    state.attribs[1].size.set(2);
    state.attribs[1].type.set(GL_FLOAT);
    state.attribs[1].stride.set(8);
    state.attribs[1].pointer.set(4);
    state.scissor.set({10, 20, 39, 59});
    state.apply();
    EXPECT_EQ(mDriver.log(),
              QStringList({"glDisable(3042)", "glUseProgram(32774)", "glUseProgram(3)",
                           "glStencilOp(7680, 7681, 7682)", "glBindTexture(3553, 8)",
                           "glBindBuffer(34962, 2)", "glEnableVertexAttribArray(1)",
                           "glVertexAttribPointer(1, 2, 5126, 0, 8, 4)", "glScissor(10, 20, 30, 40)"}));
}

TEST_F(GLStateManagerTest, InvalidStateAppliesNothing)
{
    GLState().apply();
    EXPECT_EQ(mDriver.totalCalls(), 0);
}

} // namespace

namespace {

TEST(GLFunctionsTest, CallsWithoutAContextAreReportedAndDropped)
{
    ASSERT_EQ(QOpenGLContext::currentContext(), nullptr);
    gfx::GLStateManager::instance()->clearToInvalid();
    LogCapture log;
    gfx::GLStateManager::instance()->glEnable(GL_BLEND);
    GLuint name = 7;
    gfx::GLFunctions::current()->glGenTextures(1, &name);
    EXPECT_EQ(gfx::GLFunctions::current()->glCreateProgram(), 0u);
    ASSERT_EQ(log.records().size(), 3);
    EXPECT_EQ(log.records()[0].condition, "context");
    EXPECT_EQ(log.records()[0].message, "glEnable called without a current GL context");
    EXPECT_EQ(log.records()[2].message, "glCreateProgram called without a current GL context");
    gfx::GLStateManager::instance()->clearToInvalid();
}

} // namespace
