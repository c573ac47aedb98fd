#include "Logger.h"
#include "LogCapture.h"

#include <gtest/gtest.h>
#include <thread>

static const char* const kLogSource = "../../../tests/LoggerTest";

TEST(Logger, AssertionCarriesConditionMessageSourceAndLine)
{
    LogCapture capture;
    const int line = __LINE__ + 1;
    const bool held = ORBIS_ASSERT(1 + 1 == 3, QStringLiteral("arithmetic is broken"));
    EXPECT_FALSE(held);
    ASSERT_EQ(capture.records().size(), 1);
    const LogRecord r = capture.records().first();
    EXPECT_TRUE(r.isAssertion);
    EXPECT_EQ(r.level, LogRecord::Error);
    EXPECT_EQ(r.condition, QStringLiteral("1 + 1 == 3"));
    EXPECT_EQ(r.message, QStringLiteral("arithmetic is broken"));
    EXPECT_EQ(r.file, QStringLiteral("../../../tests/LoggerTest"));
    EXPECT_EQ(r.line, line);
}

TEST(Logger, HoldingConditionLogsNothingAndUnconditionalFailureSaysFalse)
{
    LogCapture capture;
    EXPECT_TRUE(ORBIS_ASSERT(true, QStringLiteral("never")));
    EXPECT_TRUE(capture.records().isEmpty());
    ORBIS_FAIL(QStringLiteral("always"));
    ASSERT_EQ(capture.records().size(), 1);
    EXPECT_EQ(capture.records().first().condition, QStringLiteral("false"));
}

TEST(Logger, LevelWordsAndOneLinePerMessage)
{
    LogRecord r;
    r.level = LogRecord::Warn;
    r.message = QStringLiteral("two\nlines");
    EXPECT_EQ(Logger::format(r), QStringLiteral("WARN two\\nlines"));
    r.level = LogRecord::Info;
    EXPECT_TRUE(Logger::format(r).startsWith(QStringLiteral("INFO ")));
    r.level = LogRecord::Error;
    r.isAssertion = true;
    r.condition = QStringLiteral("x > 0");
    r.file = QStringLiteral("gui/Style");
    r.line = 12;
    EXPECT_EQ(Logger::format(r), QStringLiteral("ERROR ASSERT(x > 0) gui/Style:12 two\\nlines"));
}

TEST(Logger, CapturesNestAndRestoreThePreviousSink)
{
    LogCapture outer;
    {
        LogCapture inner;
        Logger::warn(QStringLiteral("inner"));
        EXPECT_TRUE(inner.contains(QStringLiteral("inner")));
    }
    Logger::warn(QStringLiteral("outer"));
    EXPECT_EQ(outer.messages(), QStringList{QStringLiteral("outer")});
}

TEST(Logger, RecordsFromOtherThreadsAreCaptured)
{
    LogCapture capture;
    std::thread worker([] {
        for (int i = 0; i < 100; ++i)
            Logger::info(QStringLiteral("worker"));
    });
    for (int i = 0; i < 100; ++i)
        Logger::info(QStringLiteral("main"));
    worker.join();
    EXPECT_EQ(capture.count(QStringLiteral("worker")), 100);
    EXPECT_EQ(capture.count(QStringLiteral("main")), 100);
}
