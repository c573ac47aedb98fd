#include "FrameRecorder.h"

#include "DisplayDevice.h"
#include "support/QtPrinters.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

FrameRecorder::Frame frame(double ms, int draws = 0, int glCalls = 0, qint64 pixels = 0)
{
    FrameRecorder::Frame f;
    f.ns = qint64(ms * 1e6);
    f.draws = draws;
    f.glCalls = glCalls;
    f.renderedPixels = pixels;
    f.compositedPixels = pixels;
    return f;
}

TEST(FrameRecorderTest, SummariesUseNearestRankPercentiles)
{
    QVector<FrameRecorder::Frame> frames;
    // 1..100 ms in scrambled order: p50 is the 50th value, p99 the 99th.
    for (int i = 0; i < 100; ++i) {
        frames << frame((i * 37) % 100 + 1, 2, 10, i == 0 ? 0 : 1000);
        frames.last().stateRequests = 30 + i % 2 * 2;
        frames.last().stateForwarded = 8;
    }
    const FrameRecorder::Summary s = FrameRecorder::summarize(frames);
    EXPECT_EQ(s.frames, 100);
    EXPECT_DOUBLE_EQ(s.meanMs, 50.5);
    EXPECT_DOUBLE_EQ(s.p50Ms, 50);
    EXPECT_DOUBLE_EQ(s.p99Ms, 99);
    EXPECT_DOUBLE_EQ(s.maxMs, 100);
    EXPECT_DOUBLE_EQ(s.drawsPerFrame, 2);
    EXPECT_DOUBLE_EQ(s.glCallsPerFrame, 10);
    EXPECT_DOUBLE_EQ(s.renderedPixelsPerFrame, 990);
    EXPECT_DOUBLE_EQ(s.stateRequestsPerFrame, 31);
    EXPECT_DOUBLE_EQ(s.stateForwardedPerFrame, 8);
    EXPECT_EQ(s.idleFrames, 0) << "a frame with GL calls is not idle";

    const FrameRecorder::Summary one = FrameRecorder::summarize({frame(7)});
    EXPECT_DOUBLE_EQ(one.p50Ms, 7);
    EXPECT_DOUBLE_EQ(one.p99Ms, 7);
    EXPECT_EQ(one.idleFrames, 1);
    EXPECT_EQ(FrameRecorder::summarize({}).frames, 0);
    EXPECT_DOUBLE_EQ(FrameRecorder::summarize({}).p99Ms, 0);
}

TEST(FrameRecorderTest, SectionsKeepTheirFramesApartAndReportTogether)
{
    DisplayDevice device(64, 64);
    FrameRecorder recorder(&device);
    EXPECT_EQ(recorder.section(), QStringLiteral("all"));
    recorder.setSection("home");
    recorder.addFrame(frame(10, 4, 40));
    recorder.addFrame(frame(20, 4, 40));
    recorder.setSection("map");
    recorder.addFrame(frame(30, 8, 90));
    recorder.setSection("home");
    recorder.addFrame(frame(30, 4, 40));
    EXPECT_EQ(recorder.sections(), QStringList({"home", "map"}));
    EXPECT_EQ(recorder.frames("home").size(), 3);
    EXPECT_DOUBLE_EQ(recorder.summary("home").meanMs, 20);
    EXPECT_DOUBLE_EQ(recorder.summary("map").drawsPerFrame, 8);
    EXPECT_EQ(recorder.total().frames, 4);
    EXPECT_EQ(recorder.summary("nowhere").frames, 0);

    const QStringList lines = recorder.report().split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[0].startsWith("section"));
    EXPECT_TRUE(lines[1].startsWith("home ")) << lines[1].toStdString();
    EXPECT_TRUE(lines[3].startsWith("total ")) << lines[3].toStdString();

    const QJsonObject json = QJsonDocument::fromJson(recorder.json()).object();
    const QJsonArray sections = json["sections"].toArray();
    ASSERT_EQ(sections.size(), 2);
    EXPECT_EQ(sections[1].toObject()["section"].toString(), "map");
    EXPECT_EQ(sections[1].toObject()["glCallsPerFrame"].toDouble(), 90);
    EXPECT_EQ(json["total"].toObject()["frames"].toInt(), 4);
}

// A tick on a display without a window draws nothing: no GL calls, no pixels.
TEST(FrameRecorderTest, TicksAreMeasuredAndCountedInTheCurrentSection)
{
    DisplayDevice device(64, 64);
    device.timer()->stop();
    FrameRecorder recorder(&device);
    recorder.setSection("idle");
    recorder.tick();
    recorder.tick();
    const QVector<FrameRecorder::Frame> frames = recorder.frames("idle");
    ASSERT_EQ(frames.size(), 2);
    EXPECT_GT(frames[0].ns, 0);
    EXPECT_EQ(frames[1].glCalls, 0);
    EXPECT_EQ(recorder.summary("idle").idleFrames, 2);
    EXPECT_FALSE(frames[0].swapped);
    EXPECT_DOUBLE_EQ(recorder.firstSwapMs(), -1) << "nothing was swapped";
}

TEST(FrameRecorderTest, TheColdStartIsTheFirstSwappedFrameAndFrameTimesAreKept)
{
    DisplayDevice device(64, 64);
    FrameRecorder recorder(&device);
    recorder.setSection("scroll");
    recorder.addFrame(frame(4));
    EXPECT_DOUBLE_EQ(recorder.firstSwapMs(), -1);
    EXPECT_FALSE(recorder.report().contains("first swap"));
    EXPECT_FALSE(QJsonDocument::fromJson(recorder.json()).object().contains("firstSwapMs"));

    FrameRecorder::Frame swapped = frame(6.5);
    swapped.swapped = true;
    recorder.addFrame(swapped);
    const double cold = recorder.firstSwapMs();
    EXPECT_GT(cold, 0);
    EXPECT_LE(cold, FrameRecorder::msSinceProcessStart());
    recorder.addFrame(swapped);
    EXPECT_DOUBLE_EQ(recorder.firstSwapMs(), cold) << "only the first swap is the cold start";
    EXPECT_TRUE(recorder.report().endsWith(
        QStringLiteral("first swap %1 ms after process start\n").arg(cold, 0, 'f', 1)));

    const QJsonObject json = QJsonDocument::fromJson(recorder.json()).object();
    EXPECT_DOUBLE_EQ(json["firstSwapMs"].toDouble(), cold);
    const QJsonArray times = json["sections"].toArray()[0].toObject()["frameMs"].toArray();
    ASSERT_EQ(times.size(), 3);
    EXPECT_DOUBLE_EQ(times[0].toDouble(), 4);
    EXPECT_DOUBLE_EQ(times[2].toDouble(), 6.5);
}

TEST(FrameRecorderTest, TheStartTimeIsFoundAfterAnyCommandName)
{
    // Fields 3 to 22 follow the name; the start time is the last of them here.
    const QByteArray tail = " S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 987654 19 20 21\n";
    EXPECT_EQ(FrameRecorder::startTicks("4242 (orbis-demo)" + tail), 987654);
    EXPECT_EQ(FrameRecorder::startTicks("4242 (a) (b) c)" + tail), 987654) << "parentheses in the name";
    EXPECT_EQ(FrameRecorder::startTicks("4242 (two  words)" + tail), 987654);
    EXPECT_EQ(FrameRecorder::startTicks("4242 orbis-demo" + tail), -1) << "no name";
    EXPECT_EQ(FrameRecorder::startTicks("4242 (x) S 1 2 3"), -1) << "too few fields";
    EXPECT_EQ(FrameRecorder::startTicks("4242 (x) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 soon"), -1);
    EXPECT_GT(FrameRecorder::msSinceProcessStart(), 0);
}

} // namespace
