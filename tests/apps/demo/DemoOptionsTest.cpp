#include "DemoOptions.h"

#include <gtest/gtest.h>

namespace {

TEST(DemoOptionsTest, DefaultsAndEveryFlag)
{
    DemoOptions defaults;
    ASSERT_TRUE(defaults.parse({}));
    EXPECT_EQ(defaults.size(), QSize(1280, 800));
    EXPECT_EQ(defaults.frames(), 0);

    DemoOptions options;
    ASSERT_TRUE(
        options.parse({"--size", "1920x720", "--frames", "12", "--screenshot", "/tmp/a.png", "--set",
                       "ui/dirty_rects=false", "--set", "ui/gl_clear_random=true", "--stats", "s.txt"}));
    EXPECT_EQ(options.size(), QSize(1920, 720));
    EXPECT_EQ(options.frames(), 12);
    EXPECT_EQ(options.screenshotPath(), QStringLiteral("/tmp/a.png"));
    EXPECT_EQ(options.statsPath(), QStringLiteral("s.txt"));
    EXPECT_EQ(options.configOverrides(), QStringList({QStringLiteral("ui/dirty_rects=false"),
                                                      QStringLiteral("ui/gl_clear_random=true")}));
}

TEST(DemoOptionsTest, BadArgumentsAreNamed)
{
    const QList<QPair<QStringList, QString>> cases = {
        {{"--size", "1280*800"}, "bad size: 1280*800 (expected WIDTHxHEIGHT)"},
        {{"--size", "0x800"}, "bad size: 0x800 (expected WIDTHxHEIGHT)"},
        {{"--frames", "0"}, "bad frame count: 0"},
        {{"--frames", "ten"}, "bad frame count: ten"},
        {{"--set", "=1"}, "bad override: =1 (expected key=value)"},
        {{"--frames"}, "--frames needs a value"},
        {{"--fullscreen", "yes"}, "unknown option: --fullscreen"},
    };
    for (const auto& c : cases) {
        DemoOptions options;
        EXPECT_FALSE(options.parse(c.first)) << c.first.join(' ').toStdString();
        EXPECT_EQ(options.error(), c.second);
    }
}

} // namespace
