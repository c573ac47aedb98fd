#include <GeometryBufferAllocator.h>
#include <VertexBuffer.h>

#include <gtest/gtest.h>
#include <support/ScopedGLRecorder.h>

using namespace gfx;

namespace {

QVector<Vertex> vertices(int n)
{
    return QVector<Vertex>(n, Vertex{1, 2, 3, 4});
}

TEST(VertexBufferTest, UploadsOnlyTheTailUntilAFramePasses)
{
    ScopedGLRecorder driver;
    driver.setLogging(true);
    auto buffer = GeometryBufferAllocator::instance()->create();
    EXPECT_EQ(buffer->append(vertices(4)), 0);
    buffer->bind();
    EXPECT_EQ(driver.log().filter("glBufferData").value(0), "glBufferData(34962, 96, 0, 35048)");
    EXPECT_EQ(buffer->append(vertices(2)), 4);
    driver.reset();
    buffer->bind();
    EXPECT_EQ(driver.count("glBufferData"), 0);
    EXPECT_TRUE(
        driver.log().filter("glBufferSubData").value(0).startsWith("glBufferSubData(34962, 64, 32, "));
    driver.reset();
    GeometryBufferAllocator::instance()->nextFrame();
    buffer->bind(); // nothing new: nothing sent
    EXPECT_EQ(driver.totalCalls(), 0);
    GeometryBufferAllocator::instance()->nextFrame();
    buffer->append(vertices(1));
    buffer->bind();
    EXPECT_EQ(driver.count("glBufferData"), 1);
    EXPECT_TRUE(
        driver.log().filter("glBufferSubData").value(0).startsWith("glBufferSubData(34962, 0, 112, "));
}

TEST(VertexBufferTest, SwitchingBuffersRepointsTheAttributes)
{
    ScopedGLRecorder driver;
    const int live = GeometryBufferAllocator::instance()->liveBuffers();
    auto first = GeometryBufferAllocator::instance()->create();
    auto second = GeometryBufferAllocator::instance()->create();
    EXPECT_EQ(GeometryBufferAllocator::instance()->liveBuffers(), live + 2);
    first->bind();
    first->bind();
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 2);
    second->bind();
    first->bind();
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 6);
    EXPECT_EQ(driver.count("glBindBuffer"), 3);
    first.reset();
    second->bind();
    EXPECT_EQ(driver.count("glDeleteBuffers"), 1);
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 8);
}

} // namespace
