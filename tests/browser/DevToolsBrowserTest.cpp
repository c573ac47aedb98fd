#include "DisplayDevice.h"
#include "ScopedConfigOverride.h"
#include "devtools/DevToolsServer.h"
#include "devtools/DevToolsSession.h"
#include "support/ColorView.h"
#include "support/devtools/DevToolsClient.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

// The inspector against the browser's own developer tools: the messages their front
// end sends when it opens (recorded from chromium 156 with ORBIS_RECORD_DEVTOOLS; the
// script it installs in pages is left out), and, where chromium is installed, the
// front end itself showing the tree.

namespace {

const char* const kOpeningSequence = ORBIS_SOURCE_DIR "/tests/browser/devtools-opening.jsonl";

class DevToolsBrowserTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ScopedConfigOverride port(QStringLiteral("ui/inspector_port"), mPort);
        mDevice = std::make_unique<DisplayDevice>(800, 480);
        mDevice->timer()->stop();
        auto* panel = new ColorView(mDevice->views(), "panel");
        panel->moveTo(10, 20);
        panel->resizeTo(300, 200);
        new ColorView(panel, "speedometer");
        new ColorView(panel, "gauge");
        auto* row = new DisplayView(mDevice->views(), "row");
        row->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
        row->setCssSize(QSizeF(400, 100));
        new DisplayView(row, "left");
        new DisplayView(row, "right");
        mDevice->doTick();
    }
    void TearDown() override { mDevice.reset(); }

    QString socketAddress() const { return QStringLiteral("127.0.0.1:%1/devtools/page/display0").arg(mPort); }

    quint16 mPort = DevToolsClient::freePort();
    std::unique_ptr<DisplayDevice> mDevice;
};

bool containsView(const QJsonObject& node, const QString& id)
{
    const QJsonArray attributes = node.value("attributes").toArray();
    if (attributes.size() >= 2 && attributes[0] == "id" && attributes[1] == id)
        return true;
    for (const QJsonValue& child : node.value("children").toArray()) {
        if (containsView(child.toObject(), id))
            return true;
    }
    return false;
}

} // namespace

TEST_F(DevToolsBrowserTest, TheFrontEndsOpeningSequenceIsAnswered)
{
    QFile file(QString::fromUtf8(kOpeningSequence));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << kOpeningSequence;
    DevToolsClient client([this] { mDevice->doTick(); });
    ASSERT_TRUE(client.open(QStringLiteral("ws://") + socketAddress()));

    QStringList answered;
    int requests = 0;
    bool sawDocument = false;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.trimmed().isEmpty())
            continue;
        const QJsonObject request = QJsonDocument::fromJson(line).object();
        ASSERT_FALSE(request.isEmpty()) << line.constData();
        const QString method = request.value("method").toString();
        client.sendRaw(QString::fromUtf8(line));
        const QJsonObject reply = client.reply(request.value("id").toInt());
        ASSERT_FALSE(reply.isEmpty()) << "no reply to " << qPrintable(method);
        ++requests;
        if (reply.contains("error")) {
            // What the inspector does not serve is refused as unknown, never failed;
            // only the screencast needs a window, which this display has not.
            const QJsonObject error = reply.value("error").toObject();
            if (method == "Page.startScreencast")
                EXPECT_EQ(error.value("message").toString(), "The display has no window to capture");
            else
                EXPECT_EQ(error.value("code").toInt(), DevToolsSession::kMethodNotFound)
                    << qPrintable(method);
            continue;
        }
        answered << method;
        if (method == "DOM.getDocument") {
            sawDocument = true;
            const QJsonObject root = reply.value("result").toObject().value("root").toObject();
            EXPECT_EQ(root.value("children").toArray()[0].toObject().value("nodeName").toString(),
                      "DisplayDevice");
        }
    }
    EXPECT_GT(requests, 10);
    EXPECT_TRUE(sawDocument);
    // The front end expands the device: its containers arrive before the reply.
    const QList<QJsonObject> expanded = client.events("DOM.setChildNodes");
    ASSERT_FALSE(expanded.isEmpty());
    EXPECT_EQ(expanded[0].value("parentId").toInt(), 2);
    EXPECT_EQ(expanded[0].value("nodes").toArray().size(), 6);
    for (const char* method : {"DOM.enable", "CSS.enable", "Overlay.enable", "Page.enable"})
        EXPECT_TRUE(answered.contains(method)) << method;
    EXPECT_TRUE(client.isConnected());
}

TEST_F(DevToolsBrowserTest, ChromiumsDeveloperToolsShowTheTree)
{
    const QString chromium = QStandardPaths::findExecutable(QStringLiteral("chromium"));
    if (chromium.isEmpty())
        GTEST_SKIP() << "chromium is not installed (./scripts/install-deps.sh --browser installs it)";

    QTemporaryDir profile;
    const quint16 browserPort = DevToolsClient::freePort();
    QProcess browser;
    // Its log is noise here (no session bus, software GL).
    browser.setStandardOutputFile(QProcess::nullDevice());
    browser.setStandardErrorFile(QProcess::nullDevice());
    browser.start(chromium, {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"),
                             QStringLiteral("--disable-gpu"), QStringLiteral("--no-first-run"),
                             QStringLiteral("--window-size=1280,800"),
                             QStringLiteral("--user-data-dir=") + profile.path(),
                             QStringLiteral("--remote-debugging-address=127.0.0.1"),
                             QStringLiteral("--remote-debugging-port=%1").arg(browserPort),
                             QStringLiteral("--remote-allow-origins=*"), QStringLiteral("about:blank")});
    ASSERT_TRUE(browser.waitForStarted(10000));
    struct Stop
    {
        QProcess& process;
        QTemporaryDir& profile;
        ~Stop()
        {
            process.kill();
            process.waitForFinished(10000);
            QDir(profile.path()).removeRecursively();
        }
    } stop{browser, profile};

    QStringList received;
    QObject::connect(mDevice->inspector(), &DevToolsServer::clientAttached, [&](DevToolsSession* session) {
        QObject::connect(session, &DevToolsSession::messageReceived,
                         [&](const QString& m) { received << m; });
    });

    // The browser serves its bundled front end; open it on the inspector's socket.
    QByteArray target;
    QElapsedTimer timer;
    timer.start();
    const QString frontEnd = QStringLiteral("/json/new?http://127.0.0.1:%1/devtools/inspector.html?ws=%2")
                                 .arg(browserPort)
                                 .arg(socketAddress());
    while (target.isEmpty() && timer.elapsed() < 30000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        target = DevToolsClient::httpRequest(browserPort, "PUT", frontEnd);
    }
    ASSERT_FALSE(target.isEmpty()) << "the browser's debugging port did not answer";
    const QString pageSocket =
        QJsonDocument::fromJson(target).object().value("webSocketDebuggerUrl").toString();
    ASSERT_FALSE(pageSocket.isEmpty()) << target.constData();

    DevToolsClient page([&] { mDevice->doTick(); });
    ASSERT_TRUE(page.open(pageSocket)) << qPrintable(page.socket().errorString()) << " " << target.constData()
                                       << " browser state " << browser.state();
    // The elements panel draws the tree inside shadow roots: collect all text.
    const QString collectText = QStringLiteral(
        "(() => { const out = []; const walk = n => { if (n.shadowRoot) walk(n.shadowRoot);"
        " for (const c of n.childNodes) { if (c.nodeType === 3) out.push(c.textContent); else walk(c); } };"
        " walk(document); return out.join(' '); })()");
    QString shown;
    timer.restart();
    while (timer.elapsed() < 60000) {
        shown = page.result("Runtime.evaluate", {{"expression", collectText}, {"returnByValue", true}})
                    .value("result")
                    .toObject()
                    .value("value")
                    .toString();
        if (shown.contains("DisplayDevice") && shown.contains("views"))
            break;
    }
    EXPECT_TRUE(shown.contains("DisplayDevice")) << qPrintable(shown.left(2000));
    EXPECT_TRUE(shown.contains("views"));

    const QByteArray png = QByteArray::fromBase64(
        page.result("Page.captureScreenshot", {{"format", "png"}}).value("data").toString().toLatin1());
    EXPECT_TRUE(png.startsWith("\x89PNG"));
    const QString shotPath = qEnvironmentVariable("ORBIS_DEVTOOLS_SCREENSHOT");
    if (!shotPath.isEmpty()) {
        QFile shot(shotPath);
        if (shot.open(QIODevice::WriteOnly))
            shot.write(png);
    }
    const QString recordPath = qEnvironmentVariable("ORBIS_RECORD_DEVTOOLS");
    if (!recordPath.isEmpty()) {
        QFile record(recordPath);
        if (record.open(QIODevice::WriteOnly))
            record.write(received.join(QLatin1Char('\n')).toUtf8() + '\n');
    }
    EXPECT_TRUE(received.join(QLatin1Char('\n')).contains("DOM.getDocument"));
}
