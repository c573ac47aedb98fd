#include "ManualClock.h"
#include "ScopedConfigOverride.h"
#include "devtools/DevToolsServer.h"
#include "devtools/DevToolsSession.h"
#include "input/touch/MouseTouchDriver.h"
#include "input/touch/TouchDevice.h"
#include "support/ColorView.h"
#include "support/GLTestContext.h"
#include "support/ScreenTest.h"
#include "support/devtools/DevToolsClient.h"

#include <QJsonDocument>

namespace {

const QColor kGround(40, 40, 40);
const QColor kTarget(0, 0, 255);

QJsonObject rgba(int r, int g, int b, double a = 1)
{
    return QJsonObject{{"r", r}, {"g", g}, {"b", b}, {"a", a}};
}

// The overlay on a real screen: what the tools highlight is drawn over the view on
// the display, touches pick views in inspect mode, and screenshots come from the frame.
class DevToolsOverlayGLTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScopedConfigOverride port(QStringLiteral("ui/inspector_port"), mPort);
        mScreen = &open(320, 200, QPoint(40, 560));
        auto* ground = new ColorView(mScreen->views(), "ground", kGround);
        ground->resizeTo(320, 200);
        target = new ColorView(mScreen->views(), "target", kTarget);
        target->moveTo(40, 30);
        target->resizeTo(100, 60);
        frame();
        ASSERT_TRUE(client.open(QStringLiteral("ws://127.0.0.1:%1/devtools/page/display0").arg(mPort)));
        const QJsonObject root = client.result("DOM.getDocument", {{"depth", -1}}).value("root").toObject();
        targetId = idIn(root, "target");
        ASSERT_NE(targetId, 0);
    }
    void TearDown() override
    {
        client.close();
        ScreenTest::TearDown();
    }
    static int idIn(const QJsonObject& node, const QString& name)
    {
        const QJsonArray attributes = node.value("attributes").toArray();
        if (attributes.size() >= 2 && attributes[0] == "id" && attributes[1] == name)
            return node.value("nodeId").toInt();
        for (const QJsonValue& child : node.value("children").toArray()) {
            if (const int id = idIn(child.toObject(), name))
                return id;
        }
        return 0;
    }
    void finger(bool down, QPoint point)
    {
        TouchDevice::getInstance(mScreen)->mouseDriver()->queueEvent(0, down, point.x(), point.y());
        mClock.advanceMs(16);
        mScreen->doTick();
    }

    quint16 mPort = DevToolsClient::freePort();
    ManualClock mClock;
    DisplayDevice* mScreen = nullptr;
    ColorView* target = nullptr;
    DevToolsClient client{[this] {
        mScreen->doTick();
    }};
    int targetId = 0;
};

} // namespace

TEST_F(DevToolsOverlayGLTest, HighlightIsDrawnOverTheViewAndFollowsIt)
{
    const QJsonObject config{{"contentColor", rgba(255, 0, 0)}, {"marginColor", rgba(0, 255, 0)}};
    EXPECT_EQ(client.call("Overlay.highlightNode", {{"nodeId", targetId}, {"highlightConfig", config}})
                  .value("result")
                  .toObject(),
              QJsonObject());
    QImage shown = frame();
    EXPECT_TRUE(colorsClose(at(shown, 41, 31), qRgb(255, 0, 0))) << std::hex << at(shown, 41, 31);
    EXPECT_TRUE(colorsClose(at(shown, 138, 88), qRgb(255, 0, 0)));
    EXPECT_TRUE(colorsClose(at(shown, 38, 31), kGround.rgb())) << "no margin, so nothing outside";
    EXPECT_TRUE(colorsClose(at(shown, 200, 150), kGround.rgb()));

    // Half-transparent colours blend over the view.
    client.call(
        "Overlay.highlightNode",
        {{"nodeId", targetId}, {"highlightConfig", QJsonObject{{"contentColor", rgba(255, 0, 0, 0.5)}}}});
    shown = frame();
    EXPECT_TRUE(colorsClose(at(shown, 60, 50), qRgb(128, 0, 127), 3)) << std::hex << at(shown, 60, 50);

    target->moveTo(150, 100);
    shown = frame();
    EXPECT_TRUE(colorsClose(at(shown, 41, 31), kGround.rgb()));
    EXPECT_TRUE(colorsClose(at(shown, 160, 110), qRgb(128, 0, 127), 3));

    client.call("Overlay.hideHighlight");
    shown = frame();
    EXPECT_TRUE(colorsClose(at(shown, 160, 110), kTarget.rgb()));
}

TEST_F(DevToolsOverlayGLTest, ATouchInInspectModePicksTheViewUnderIt)
{
    int taps = 0;
    QObject::connect(target, qOverload<DisplayView*>(&DisplayView::tapped), [&taps] { ++taps; });
    client.call("Overlay.setInspectMode", {{"mode", "searchForNode"}, {"highlightConfig", QJsonObject()}});
    finger(true, QPoint(60, 50));
    finger(false, QPoint(60, 50));
    const QJsonObject picked = client.waitForEvent("Overlay.inspectNodeRequested");
    EXPECT_EQ(picked.value("params").toObject(), QJsonObject({{"backendNodeId", targetId}}));
    EXPECT_EQ(taps, 0) << "the view itself does not see the touch";

    client.call("Overlay.setInspectMode", {{"mode", "none"}});
    client.clearMessages();
    finger(true, QPoint(60, 50));
    finger(false, QPoint(60, 50));
    EXPECT_TRUE(client.events("Overlay.inspectNodeRequested").isEmpty());

    EXPECT_EQ(client.call("Overlay.setInspectMode", {{"mode", "captureAreaScreenshot"}})
                  .value("error")
                  .toObject()
                  .value("code")
                  .toInt(),
              DevToolsSession::kInvalidParams);
}

TEST_F(DevToolsOverlayGLTest, CaptureScreenshotReturnsTheFrameAsPng)
{
    const QJsonObject reply = client.call("Page.captureScreenshot", {{"format", "png"}});
    const QByteArray png =
        QByteArray::fromBase64(reply.value("result").toObject().value("data").toString().toLatin1());
    ASSERT_TRUE(png.startsWith("\x89PNG"));
    const QImage image = QImage::fromData(png, "PNG");
    ASSERT_EQ(image.size(), QSize(320, 200));
    EXPECT_TRUE(colorsClose(at(image, 60, 50), kTarget.rgb()));
    EXPECT_TRUE(colorsClose(at(image, 10, 10), kGround.rgb()));

    EXPECT_EQ(client.call("Page.captureScreenshot", {{"format", "jpeg"}})
                  .value("error")
                  .toObject()
                  .value("message"),
              "Unsupported screenshot format: 'jpeg'");
}

TEST_F(DevToolsOverlayGLTest, ScreencastSendsNewFramesOnlyOnceTheLastIsAcknowledged)
{
    const auto framesSoFar = [this] {
        client.call("DOM.enable"); // a round trip after the frames the ticks produced
        return client.events("Page.screencastFrame");
    };
    EXPECT_EQ(client.call("Page.startScreencast", {{"format", "png"}, {"maxWidth", 160}, {"maxHeight", 160}})
                  .value("result")
                  .toObject(),
              QJsonObject());
    const QJsonObject first = client.waitForEvent("Page.screencastFrame").value("params").toObject();
    const QImage image =
        QImage::fromData(QByteArray::fromBase64(first.value("data").toString().toLatin1()), "PNG");
    ASSERT_EQ(image.size(), QSize(160, 100));
    EXPECT_TRUE(colorsClose(at(image, 45, 30), kTarget.rgb(), 8));
    EXPECT_EQ(first.value("metadata").toObject().value("deviceWidth").toInt(), 320);
    EXPECT_EQ(first.value("sessionId").toInt(), 1);

    target->moveTo(150, 100);
    for (int i = 0; i < 3; ++i)
        mScreen->doTick();
    EXPECT_EQ(framesSoFar().size(), 1) << "no frame before the last one is acknowledged";

    client.call("Page.screencastFrameAck", {{"sessionId", 1}});
    mScreen->doTick();
    const QJsonObject second = client.waitFor(
        [](const QJsonObject& m) { return m.value("params").toObject().value("sessionId").toInt() == 2; });
    EXPECT_FALSE(second.isEmpty());

    client.call("Page.screencastFrameAck", {{"sessionId", 2}});
    for (int i = 0; i < 3; ++i)
        mScreen->doTick();
    EXPECT_EQ(framesSoFar().size(), 2) << "an unchanged display sends nothing";
    EXPECT_EQ(client.call("Page.stopScreencast").value("result").toObject(), QJsonObject());
}
