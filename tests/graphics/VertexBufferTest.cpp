#include <GeometryBufferAllocator.h>
#include <VertexBuffer.h>

#include <gtest/gtest.h>
#include <memory>
#include <support/ScopedGLRecorder.h>
#include <vector>

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
    // A new store filled in one call.
    EXPECT_TRUE(driver.log().filter("glBufferData").value(0).startsWith("glBufferData(34962, 80, "));
    EXPECT_EQ(driver.count("glBufferSubData"), 0);
    // Grown after a draw: a store with room to spare, then everything again.
    EXPECT_EQ(buffer->append(vertices(2)), 4);
    driver.reset();
    buffer->bind();
    EXPECT_EQ(driver.log().filter("glBufferData").value(0), "glBufferData(34962, 180, 0, 35048)");
    EXPECT_TRUE(
        driver.log().filter("glBufferSubData").value(0).startsWith("glBufferSubData(34962, 0, 120, "));
    // Within the room only the tail goes.
    buffer->append(vertices(3));
    driver.reset();
    buffer->bind();
    EXPECT_EQ(driver.count("glBufferData"), 0);
    EXPECT_TRUE(
        driver.log().filter("glBufferSubData").value(0).startsWith("glBufferSubData(34962, 120, 60, "));
    driver.reset();
    GeometryBufferAllocator::instance()->nextFrame();
    buffer->bind(); // nothing new: nothing sent
    EXPECT_EQ(driver.totalCalls(), 0);
    GeometryBufferAllocator::instance()->nextFrame();
    buffer->append(vertices(1));
    buffer->bind();
    EXPECT_TRUE(driver.log().filter("glBufferData").value(0).startsWith("glBufferData(34962, 200, "));
    EXPECT_EQ(driver.count("glBufferSubData"), 0);
}

TEST(VertexBufferTest, TheBuffersOfGoneListsServeTheNextOnes)
{
    ScopedGLRecorder driver;
    GeometryBufferAllocator* allocator = GeometryBufferAllocator::instance();
    allocator->releaseSpareBuffers();
    driver.reset();
    for (int frame = 0; frame < 3; ++frame) {
        allocator->nextFrame();
        auto buffer = allocator->create();
        buffer->append(vertices(6));
        buffer->bind();
    }
    EXPECT_EQ(driver.count("glGenBuffers"), 1);
    EXPECT_EQ(driver.count("glDeleteBuffers"), 0);
    // The same name stays bound: neither the binding nor the pointers are sent again.
    EXPECT_EQ(driver.count("glBindBuffer"), 1);
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 3);
    EXPECT_EQ(driver.count("glBufferData"), 3);

    // Only a few are kept.
    std::vector<std::unique_ptr<VertexBuffer>> many;
    for (int i = 0; i < 12; ++i) {
        many.push_back(allocator->create());
        many.back()->append(vertices(1));
        many.back()->bind();
    }
    many.clear();
    EXPECT_EQ(allocator->spareBuffers(), 8);
    EXPECT_EQ(driver.count("glDeleteBuffers"), 4);
    driver.reset();
    allocator->releaseSpareBuffers();
    EXPECT_EQ(allocator->spareBuffers(), 0);
    EXPECT_EQ(driver.count("glDeleteBuffers"), 8);
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
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 3);
    second->bind();
    first->bind();
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 9);
    EXPECT_EQ(driver.count("glBindBuffer"), 3);
    // A gone list's buffer is kept bound and described: nothing to repoint.
    first.reset();
    EXPECT_EQ(driver.count("glDeleteBuffers"), 0);
    auto third = GeometryBufferAllocator::instance()->create();
    third->bind();
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 9);
    second->bind();
    EXPECT_EQ(driver.count("glVertexAttribPointer"), 12);
}

} // namespace
