#include "devtools/DevToolsServer.h"
#include "DisplayDevice.h"
#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "StyleManager.h"
#include "devtools/DevToolsSession.h"
#include "support/ColorView.h"
#include "support/QtPrinters.h"
#include "support/ScopedStyleAssets.h"
#include "support/devtools/DevToolsClient.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTcpServer>
#include <gtest/gtest.h>
#include <memory>

namespace {

QString attribute(const QJsonObject& node, const QString& name)
{
    const QJsonArray attributes = node.value(QStringLiteral("attributes")).toArray();
    for (int i = 0; i + 1 < attributes.size(); i += 2) {
        if (attributes[i].toString() == name)
            return attributes[i + 1].toString();
    }
    return QStringLiteral("<absent>");
}

QJsonArray childrenOf(const QJsonObject& node)
{
    return node.value(QStringLiteral("children")).toArray();
}

QStringList ids(const QJsonArray& nodes)
{
    QStringList names;
    for (const QJsonValue& node : nodes)
        names << attribute(node.toObject(), QStringLiteral("id"));
    return names;
}

QJsonObject findNode(const QJsonObject& node, const QString& id)
{
    if (attribute(node, QStringLiteral("id")) == id)
        return node;
    for (const QJsonValue& child : childrenOf(node)) {
        const QJsonObject found = findNode(child.toObject(), id);
        if (!found.isEmpty())
            return found;
    }
    return QJsonObject();
}

QString computed(const QJsonObject& result, const QString& name)
{
    for (const QJsonValue& entry : result.value(QStringLiteral("computedStyle")).toArray()) {
        if (entry.toObject().value(QStringLiteral("name")).toString() == name)
            return entry.toObject().value(QStringLiteral("value")).toString();
    }
    return QStringLiteral("<absent>");
}

QList<double> quad(const QJsonObject& model, const char* box)
{
    QList<double> values;
    for (const QJsonValue& v : model.value(QLatin1String(box)).toArray())
        values << v.toDouble();
    return values;
}

int errorCode(const QJsonObject& reply)
{
    return reply.value(QStringLiteral("error")).toObject().value(QStringLiteral("code")).toInt();
}

QString errorMessage(const QJsonObject& reply)
{
    return reply.value(QStringLiteral("error")).toObject().value(QStringLiteral("message")).toString();
}

// A display started with "ui/inspector_port", a known tree on it, and a client.
class DevToolsServerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mPort = DevToolsClient::freePort();
        ScopedConfigOverride port(QStringLiteral("ui/inspector_port"), mPort);
        mDevice = std::make_unique<DisplayDevice>(800, 480);
        mDevice->timer()->stop();

        panel = new ColorView(mDevice->views(), "panel");
        panel->moveTo(10, 20);
        panel->resizeTo(300, 200);
        for (const char* name : {"first", "second", "third"})
            new ColorView(panel, name);

        // A 400-wide row with 10 of padding: a fixed 100-wide child and a flexible
        // one with a 5 left margin, which gets the remaining 275.
        row = new DisplayView(mDevice->views(), "row");
        row->setCssFlexDirection(CSS_FLEX_DIRECTION_ROW);
        row->setCssSize(QSizeF(400, 100));
        row->setCssTopLeft(QPointF(50, 250));
        row->setCssPadding(10, 10, 10, 10, CSS_UNDEFINED, CSS_UNDEFINED);
        auto* fixed = new DisplayView(row, "fixed");
        fixed->setCssWidth(100);
        flexible = new DisplayView(row, "flexible");
        flexible->setCssFlex(1);
        flexible->setCssMargin(CSS_LEFT, 5);
        mDevice->doTick();
    }
    void TearDown() override
    {
        client.reset();
        mDevice.reset();
    }

    QString url() const { return QStringLiteral("ws://127.0.0.1:%1/devtools/page/display0").arg(mPort); }
    void attach() { ASSERT_TRUE(client->open(url())); }
    QJsonObject document(int depth = -1)
    {
        return client->result(QStringLiteral("DOM.getDocument"), {{QStringLiteral("depth"), depth}})
            .value(QStringLiteral("root"))
            .toObject();
    }
    int idOf(const QJsonObject& root, const QString& name)
    {
        return findNode(root, name).value(QStringLiteral("nodeId")).toInt();
    }
    // Runs a frame, then a request: the events that came before its reply.
    QList<QJsonObject> settle()
    {
        client->clearMessages();
        mDevice->doTick();
        const int id = client->send("DOM.enable");
        client->reply(id);
        QList<QJsonObject> events = client->messages();
        events.removeLast();
        return events;
    }
    QJsonObject nodeCall(const QString& method, int nodeId)
    {
        return client->call(method, {{QStringLiteral("nodeId"), nodeId}});
    }

    quint16 mPort = 0;
    std::unique_ptr<DisplayDevice> mDevice;
    std::unique_ptr<DevToolsClient> client = std::make_unique<DevToolsClient>();
    DisplayView* panel = nullptr;
    DisplayView* row = nullptr;
    DisplayView* flexible = nullptr;
};

TEST(InspectorConfig, OffUnlessAPortIsConfiguredAndFree)
{
    {
        DisplayDevice device(100, 100);
        EXPECT_EQ(device.inspector(), nullptr);
    }
    LogCapture capture;
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost, 0));
    {
        ScopedConfigOverride port(QStringLiteral("ui/inspector_port"), taken.serverPort());
        DisplayDevice device(100, 100);
        EXPECT_EQ(device.inspector(), nullptr);
    }
    ASSERT_EQ(capture.assertions().size(), 1);
    EXPECT_TRUE(capture.assertions()[0].startsWith(
        QStringLiteral("The inspector cannot listen on 127.0.0.1:%1: ").arg(taken.serverPort())));
    {
        ScopedConfigOverride port(QStringLiteral("ui/inspector_port"), 65535);
        DisplayDevice device(100, 100, 1);
        EXPECT_EQ(device.inspector(), nullptr);
    }
    EXPECT_EQ(capture.assertions().last(), "The inspector port is out of range: 65536");
}

TEST_F(DevToolsServerTest, DiscoveryListsTheDisplayAsAPageTarget)
{
    int status = 0;
    const QJsonArray targets =
        QJsonDocument::fromJson(DevToolsClient::httpGet(mPort, "/json", &status)).array();
    EXPECT_EQ(status, 200);
    ASSERT_EQ(targets.size(), 1);
    const QJsonObject target = targets[0].toObject();
    EXPECT_EQ(target.value("id").toString(), "display0");
    EXPECT_EQ(target.value("type").toString(), "page");
    EXPECT_EQ(target.value("webSocketDebuggerUrl").toString(), url());
    EXPECT_EQ(target.value("devtoolsFrontendUrl").toString(),
              QStringLiteral("/devtools/inspector.html?ws=127.0.0.1:%1/devtools/page/display0").arg(mPort));
    EXPECT_EQ(QJsonDocument::fromJson(DevToolsClient::httpGet(mPort, "/json/list")).array(), targets);

    const QJsonObject version =
        QJsonDocument::fromJson(DevToolsClient::httpGet(mPort, "/json/version")).object();
    EXPECT_EQ(version.value("Protocol-Version").toString(), "1.3");
    EXPECT_TRUE(version.value("Browser").toString().startsWith("OrbisUIFramework/"));

    DevToolsClient::httpGet(mPort, "/json/nothing", &status);
    EXPECT_EQ(status, 404);

    // An attached client takes the socket off the list.
    attach();
    const QJsonObject busy =
        QJsonDocument::fromJson(DevToolsClient::httpGet(mPort, "/json")).array()[0].toObject();
    EXPECT_FALSE(busy.contains("webSocketDebuggerUrl"));
    EXPECT_EQ(busy.value("id").toString(), "display0");
}

TEST_F(DevToolsServerTest, GetDocumentDescribesTheTreeWithGeometryAndStyle)
{
    panel->setStyle(Style("CornerRadius:4"));
    mDevice->views()->children().last()->hide();
    attach();
    const QJsonObject root = document();
    EXPECT_EQ(root.value("nodeType").toInt(), 9);
    EXPECT_EQ(root.value("xmlVersion").toString(), "1.0");
    ASSERT_EQ(childrenOf(root).size(), 1);
    const QJsonObject screen = childrenOf(root)[0].toObject();
    EXPECT_EQ(screen.value("nodeName").toString(), "DisplayDevice");
    EXPECT_EQ(attribute(screen, "width"), "800");
    // The containers in z-order; the inspector's own overlay is not part of the tree.
    EXPECT_EQ(ids(childrenOf(screen)),
              QStringList({"hidden", "views", "customLayers", "popupViewContainer", "popups", "overlays"}));
    EXPECT_TRUE(childrenOf(childrenOf(screen)[5].toObject()).isEmpty());
    EXPECT_EQ(attribute(childrenOf(screen)[0].toObject(), "hidden"), "");

    const QJsonObject panelNode = findNode(root, "panel");
    EXPECT_EQ(panelNode.value("nodeName").toString(), "ColorView");
    EXPECT_EQ(panelNode.value("localName").toString(), "ColorView");
    EXPECT_EQ(panelNode.value("childNodeCount").toInt(), 3);
    EXPECT_EQ(panelNode.value("parentId").toInt(), idOf(root, "views"));
    EXPECT_EQ(panelNode.value("attributes").toArray(),
              QJsonArray({"id", "panel", "x", "10", "y", "20", "width", "300", "height", "200", "style",
                          "CornerRadius:4"}));
    EXPECT_EQ(ids(childrenOf(panelNode)), QStringList({"first", "second", "third"}));
    EXPECT_EQ(attribute(findNode(root, "row"), "hidden"), "");
    EXPECT_EQ(attribute(findNode(root, "flexible"), "width"), "275");
}

TEST_F(DevToolsServerTest, RequestChildNodesSendsTheChildrenBeforeItsReply)
{
    attach();
    const QJsonObject root = document(1);
    const QJsonObject screen = childrenOf(root)[0].toObject();
    EXPECT_FALSE(screen.contains("children"));
    EXPECT_EQ(screen.value("childNodeCount").toInt(), 6);

    client->clearMessages();
    const int request = client->send("DOM.requestChildNodes", {{"nodeId", screen.value("nodeId")}});
    const QJsonObject first = client->next();
    const QJsonObject second = client->next();
    EXPECT_EQ(first.value("method").toString(), "DOM.setChildNodes");
    EXPECT_EQ(second.value("id").toInt(), request);
    EXPECT_EQ(second.value("result").toObject(), QJsonObject());
    const QJsonObject params = first.value("params").toObject();
    EXPECT_EQ(params.value("parentId"), screen.value("nodeId"));
    const QJsonArray containers = params.value("nodes").toArray();
    EXPECT_EQ(ids(containers),
              QStringList({"hidden", "views", "customLayers", "popupViewContainer", "popups", "overlays"}));
    EXPECT_FALSE(containers[1].toObject().contains("children"));

    // Two levels deep: the views container's children come along, in z-order.
    client->clearMessages();
    client->call("DOM.requestChildNodes",
                 {{"nodeId", containers[1].toObject().value("nodeId")}, {"depth", 2}});
    const QJsonArray views = client->events("DOM.setChildNodes").value(0).value("nodes").toArray();
    EXPECT_EQ(ids(views), QStringList({"panel", "row"}));
    EXPECT_EQ(ids(childrenOf(views[0].toObject())), QStringList({"first", "second", "third"}));

    const QJsonObject unknown = client->call("DOM.requestChildNodes", {{"nodeId", 99999}});
    EXPECT_EQ(errorCode(unknown), DevToolsSession::kServerError);
    EXPECT_EQ(errorMessage(unknown), "Could not find node with given id");
    const QJsonObject flat =
        client->call("DOM.requestChildNodes", {{"nodeId", screen.value("nodeId")}, {"depth", 0}});
    EXPECT_EQ(errorCode(flat), DevToolsSession::kInvalidParams);
}

TEST_F(DevToolsServerTest, BoxModelIsInScreenCoordinatesWithFlexPaddingAndMargin)
{
    attach();
    const QJsonObject root = document();
    const QJsonObject flex =
        client->result("DOM.getBoxModel", {{"nodeId", idOf(root, "flexible")}}).value("model").toObject();
    EXPECT_EQ(quad(flex, "border"), QList<double>({165, 260, 440, 260, 440, 340, 165, 340}));
    EXPECT_EQ(quad(flex, "margin"), QList<double>({160, 260, 440, 260, 440, 340, 160, 340}));
    EXPECT_EQ(flex.value("width").toInt(), 275);
    EXPECT_EQ(flex.value("height").toInt(), 80);

    const QJsonObject rowModel =
        client->result("DOM.getBoxModel", {{"backendNodeId", idOf(root, "row")}}).value("model").toObject();
    EXPECT_EQ(quad(rowModel, "content"), QList<double>({60, 260, 440, 260, 440, 340, 60, 340}));
    EXPECT_EQ(quad(rowModel, "padding"), QList<double>({50, 250, 450, 250, 450, 350, 50, 350}));

    // A view inside a moved parent.
    const QJsonObject second =
        client->result("DOM.getBoxModel", {{"nodeId", idOf(root, "panel")}}).value("model").toObject();
    EXPECT_EQ(quad(second, "content"), QList<double>({10, 20, 310, 20, 310, 220, 10, 220}));

    EXPECT_EQ(errorMessage(client->call("DOM.getBoxModel")), "Either nodeId or backendNodeId is required.");
    EXPECT_EQ(errorMessage(nodeCall("DOM.getBoxModel", DevToolsDomTree::kDocumentId)),
              "Could not find node with given id");
}

TEST_F(DevToolsServerTest, ComputedStyleOfAFlexViewNamesItsFlexProperties)
{
    attach();
    const QJsonObject root = document();
    const QJsonObject flex =
        client->result("CSS.getComputedStyleForNode", {{"nodeId", idOf(root, "flexible")}});
    EXPECT_EQ(computed(flex, "display"), "flex");
    EXPECT_EQ(computed(flex, "position"), "relative");
    EXPECT_EQ(computed(flex, "left"), "115px");
    EXPECT_EQ(computed(flex, "width"), "275px");
    EXPECT_EQ(computed(flex, "css-flex"), "1");
    EXPECT_EQ(computed(flex, "css-width"), "auto");
    EXPECT_EQ(computed(flex, "css-height"), "auto");
    EXPECT_EQ(computed(flex, "css-margin-left"), "5px");
    EXPECT_EQ(computed(flex, "css-margin-start"), "<absent>");
    EXPECT_EQ(computed(flex, "css-align-self"), "auto");

    const QJsonObject rowStyle =
        nodeCall("CSS.getComputedStyleForNode", idOf(root, "row")).value("result").toObject();
    EXPECT_EQ(computed(rowStyle, "css-width"), "400px");
    EXPECT_EQ(computed(rowStyle, "css-height"), "100px");
    EXPECT_EQ(computed(rowStyle, "css-flex-direction"), "row");
    EXPECT_EQ(computed(rowStyle, "css-padding-bottom"), "10px");
    EXPECT_EQ(computed(rowStyle, "css-position-left"), "50px");

    // A view that places itself has no flex entries.
    panel->setStyle(Style("CornerRadius:4"));
    panel->setAlpha(0.5);
    const QJsonObject plain =
        nodeCall("CSS.getComputedStyleForNode", idOf(root, "panel")).value("result").toObject();
    EXPECT_EQ(computed(plain, "display"), "block");
    EXPECT_EQ(computed(plain, "position"), "absolute");
    EXPECT_EQ(computed(plain, "opacity"), "0.5");
    EXPECT_EQ(computed(plain, "css-width"), "<absent>");
    EXPECT_EQ(computed(plain, "CornerRadius"), "4");
}

TEST_F(DevToolsServerTest, MatchedStylesListTheNamedStylesInTheOrderTheyApply)
{
    ScopedStyleAssets assets;
    assets.write("styles.conf", "Card=\"CornerRadius:8; FontSize:20\"\n"
                                "[Card]\n"
                                "Warning=\"Color:#ff0000\"\n");
    assets.manager()->loadConfiguration();
    panel->setStyle(Style("Card; Card/Warning; FontSize:24"));
    attach();
    const QJsonObject root = document();
    const QJsonObject matched =
        nodeCall("CSS.getMatchedStylesForNode", idOf(root, "panel")).value("result").toObject();
    const QJsonArray rules = matched.value("matchedCSSRules").toArray();
    ASSERT_EQ(rules.size(), 2);
    const QJsonObject card = rules[0].toObject().value("rule").toObject();
    EXPECT_EQ(card.value("selectorList").toObject().value("text").toString(), "Card");
    EXPECT_EQ(card.value("style").toObject().value("cssProperties").toArray(),
              QJsonArray({QJsonObject{{"name", "FontSize"}, {"value", "20"}},
                          QJsonObject{{"name", "CornerRadius"}, {"value", "8"}}}));
    EXPECT_EQ(rules[1]
                  .toObject()
                  .value("rule")
                  .toObject()
                  .value("selectorList")
                  .toObject()
                  .value("text")
                  .toString(),
              "Card/Warning");
    EXPECT_EQ(matched.value("inlineStyle").toObject().value("cssProperties").toArray(),
              QJsonArray({QJsonObject{{"name", "FontSize"}, {"value", "24"}}}));
    panel->setStyle(Style()); // before the styles' manager goes

    // A flex view shows its binding's values last, under the names the tools know.
    const QJsonArray flexRules = nodeCall("CSS.getMatchedStylesForNode", idOf(root, "flexible"))
                                     .value("result")
                                     .toObject()
                                     .value("matchedCSSRules")
                                     .toArray();
    ASSERT_EQ(flexRules.size(), 1);
    const QJsonObject layoutRule = flexRules[0].toObject().value("rule").toObject();
    EXPECT_EQ(layoutRule.value("selectorList").toObject().value("text").toString(), "CssLayout");
    QHash<QString, QString> values;
    for (const QJsonValue& p : layoutRule.value("style").toObject().value("cssProperties").toArray())
        values.insert(p.toObject().value("name").toString(), p.toObject().value("value").toString());
    EXPECT_EQ(values.value("flex"), "1");
    EXPECT_EQ(values.value("width"), "auto");
    EXPECT_EQ(values.value("position"), "relative");
    EXPECT_EQ(values.value("margin-left"), "5px");
    EXPECT_EQ(values.value("border-top-width"), "0px");
    EXPECT_FALSE(values.contains("css-flex"));
}

TEST_F(DevToolsServerTest, TreeChangesArriveAsEventsAfterTheFrame)
{
    attach();
    const QJsonObject root = document();
    const int panelId = idOf(root, "panel");
    const int thirdId = idOf(root, "third");
    const int secondId = idOf(root, "second");
    EXPECT_TRUE(settle().isEmpty()) << "an unchanged tree sends nothing";

    new ColorView(panel, "fourth");
    mDevice->doTick();
    const QJsonObject inserted = client->waitForEvent("DOM.childNodeInserted").value("params").toObject();
    EXPECT_EQ(inserted.value("parentNodeId").toInt(), panelId);
    EXPECT_EQ(inserted.value("previousNodeId").toInt(), thirdId);
    EXPECT_EQ(attribute(inserted.value("node").toObject(), "id"), "fourth");

    client->clearMessages();
    delete panel->children().first();
    panel->children().first()->moveTo(7, 8);
    mDevice->doTick();
    client->waitForEvent("DOM.attributeModified");
    EXPECT_EQ(client->events("DOM.childNodeRemoved"),
              QList<QJsonObject>({QJsonObject{{"parentNodeId", panelId}, {"nodeId", idOf(root, "first")}}}));
    EXPECT_EQ(client->events("DOM.attributeModified"),
              QList<QJsonObject>({QJsonObject{{"nodeId", secondId}, {"name", "x"}, {"value", "7"}},
                                  QJsonObject{{"nodeId", secondId}, {"name", "y"}, {"value", "8"}}}));

    // Raising a view moves it: removed, then inserted after the new last-but-one.
    const int fourthId = inserted.value("node").toObject().value("nodeId").toInt();
    client->clearMessages();
    panel->children().first()->raise();
    panel->children().first()->hide();
    mDevice->doTick();
    client->waitForEvent("DOM.attributeModified");
    const QList<QJsonObject> order = client->messages();
    ASSERT_EQ(order.size(), 3);
    EXPECT_EQ(order[0].value("method").toString(), "DOM.childNodeRemoved");
    EXPECT_EQ(order[0].value("params").toObject(),
              QJsonObject({{"parentNodeId", panelId}, {"nodeId", secondId}}));
    EXPECT_EQ(order[1].value("method").toString(), "DOM.childNodeInserted");
    const QJsonObject moved = order[1].value("params").toObject();
    EXPECT_EQ(moved.value("previousNodeId").toInt(), fourthId);
    EXPECT_EQ(moved.value("node").toObject().value("nodeId").toInt(), secondId)
        << "a moved view keeps its id";
    EXPECT_EQ(order[2].value("params").toObject(),
              QJsonObject({{"nodeId", thirdId}, {"name", "hidden"}, {"value", ""}}));

    // Below a node whose children the client never asked for, only the count changes.
    client->clearMessages();
    client->call("DOM.getDocument", {{"depth", 2}});
    const int viewsId = idOf(root, "views");
    new ColorView(mDevice->views(), "late");
    mDevice->doTick();
    const QJsonObject counted = client->waitForEvent("DOM.childNodeCountUpdated").value("params").toObject();
    EXPECT_EQ(counted, QJsonObject({{"nodeId", viewsId}, {"childNodeCount", 3}}));
    EXPECT_TRUE(client->events("DOM.childNodeInserted").isEmpty());
}

TEST_F(DevToolsServerTest, AViewThatChangesParentsLeavesBeforeItArrives)
{
    attach();
    const QJsonObject root = document();
    const int secondId = idOf(root, "second");
    client->clearMessages();
    // The new parent comes first in the tree, so its insertion is found first.
    DisplayView* second = *std::next(panel->children().list().begin());
    second->changeParent(mDevice->views());
    mDevice->doTick();
    client->waitForEvent("DOM.childNodeInserted");
    const QList<QJsonObject> order = client->messages();
    ASSERT_EQ(order.size(), 2);
    EXPECT_EQ(order[0].value("method").toString(), "DOM.childNodeRemoved");
    EXPECT_EQ(order[0].value("params").toObject(),
              QJsonObject({{"parentNodeId", idOf(root, "panel")}, {"nodeId", secondId}}));
    const QJsonObject inserted = order[1].value("params").toObject();
    EXPECT_EQ(inserted.value("parentNodeId").toInt(), idOf(root, "views"));
    EXPECT_EQ(inserted.value("previousNodeId").toInt(), idOf(root, "row"));
    EXPECT_EQ(inserted.value("node").toObject().value("nodeId").toInt(), secondId);

    EXPECT_TRUE(settle().isEmpty());
}

TEST_F(DevToolsServerTest, PushingABackendNodeSendsTheMissingLevelsAbove)
{
    attach();
    const QJsonObject full = document();
    const int flexibleId = idOf(full, "flexible");
    const int screenId = childrenOf(full)[0].toObject().value("nodeId").toInt();
    document(1); // the client knows the device only; ids stay
    client->clearMessages();
    const QJsonArray pushed = client
                                  ->result("DOM.pushNodesByBackendIdsToFrontend",
                                           {{"backendNodeIds", QJsonArray{flexibleId, 99999}}})
                                  .value("nodeIds")
                                  .toArray();
    EXPECT_EQ(pushed, QJsonArray({flexibleId, 0}));
    const QList<QJsonObject> levels = client->events("DOM.setChildNodes");
    ASSERT_EQ(levels.size(), 3);
    EXPECT_EQ(levels[0].value("parentId").toInt(), screenId);
    EXPECT_EQ(levels[1].value("parentId").toInt(), idOf(full, "views"));
    EXPECT_EQ(levels[2].value("parentId").toInt(), idOf(full, "row"));
    EXPECT_EQ(ids(levels[2].value("nodes").toArray()), QStringList({"fixed", "flexible"}));

    // Pointing at the display finds the deepest view; empty space is the device.
    const QJsonObject atFlexible = client->result("DOM.getNodeForLocation", {{"x", 200}, {"y", 300}});
    EXPECT_EQ(atFlexible, QJsonObject({{"backendNodeId", flexibleId}, {"nodeId", flexibleId}}));
    const QJsonObject atNothing = client->result("DOM.getNodeForLocation", {{"x", 700}, {"y", 50}});
    EXPECT_EQ(atNothing.value("nodeId").toInt(), screenId);
}

TEST_F(DevToolsServerTest, MalformedRequestsGetErrorsAndTheSessionGoesOn)
{
    attach();
    client->sendRaw("{\"id\": 1, \"method\": ");
    const QJsonObject parse = client->next();
    EXPECT_EQ(errorCode(parse), DevToolsSession::kParseError);
    EXPECT_TRUE(parse.value("id").isNull());
    EXPECT_TRUE(errorMessage(parse).startsWith("Parse error: "));

    client->sendRaw("[1, 2]");
    EXPECT_EQ(errorCode(client->next()), DevToolsSession::kInvalidRequest);
    client->sendRaw("{\"id\": 7}");
    const QJsonObject noMethod = client->next();
    EXPECT_EQ(errorCode(noMethod), DevToolsSession::kInvalidRequest);
    EXPECT_EQ(noMethod.value("id").toInt(), 7);
    client->sendRaw("{\"id\": -3, \"method\": \"DOM.enable\"}");
    EXPECT_EQ(errorCode(client->next()), DevToolsSession::kInvalidRequest);
    client->sendRaw("{\"id\": 8, \"method\": \"DOM.enable\", \"params\": [1]}");
    EXPECT_EQ(errorCode(client->next()), DevToolsSession::kInvalidParams);
    client->socket().sendBinaryMessage("{}");
    EXPECT_EQ(errorMessage(client->next()), "Invalid request: binary messages are not supported");

    const QJsonObject unknown = client->call("Network.enable");
    EXPECT_EQ(errorCode(unknown), DevToolsSession::kMethodNotFound);
    EXPECT_EQ(errorMessage(unknown), "'Network.enable' wasn't found");

    EXPECT_EQ(client->call("DOM.enable").value("result").toObject(), QJsonObject());
    EXPECT_TRUE(client->isConnected());
}

TEST_F(DevToolsServerTest, MessagesUpToOneMegabyteAreRead)
{
    attach();
    const QString head = QStringLiteral("{\"id\":5,\"method\":\"DOM.enable\",\"params\":{\"pad\":\"");
    const QString tail = QStringLiteral("\"}}");
    const int room = int(DevToolsServer::kMaxMessageBytes) - head.size() - tail.size();
    client->sendRaw(head + QString(room, QLatin1Char('x')) + tail);
    EXPECT_EQ(client->reply(5).value("result").toObject(), QJsonObject());

    client->sendRaw(head + QString(room + 1, QLatin1Char('x')) + tail);
    ASSERT_TRUE(client->waitForDisconnect());
    EXPECT_EQ(client->socket().closeCode(), QWebSocketProtocol::CloseCodeTooMuchData);

    // The server is free for the next client.
    client = std::make_unique<DevToolsClient>();
    attach();
    EXPECT_EQ(client->call("DOM.enable").value("result").toObject(), QJsonObject());
}

TEST_F(DevToolsServerTest, ARequestThatArrivesWithTheHandshakeIsAnswered)
{
    // Browsers send their first request at once: it may share a packet with the upgrade.
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), mPort);
    ASSERT_TRUE(socket.waitForConnected(5000));
    const QByteArray payload = R"({"id":1,"method":"DOM.enable"})";
    QByteArray frame("\x81", 1);
    frame += char(0x80 | payload.size());
    const QByteArray mask("\x01\x02\x03\x04", 4);
    frame += mask;
    for (int i = 0; i < payload.size(); ++i)
        frame += char(payload[i] ^ mask[i % 4]);
    socket.write("GET /devtools/page/display0 HTTP/1.1\r\nHost: 127.0.0.1\r\nUpgrade: websocket\r\n"
                 "Connection: Upgrade\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n"
                 "Sec-WebSocket-Version: 13\r\n\r\n" +
                 frame);
    QByteArray received;
    QElapsedTimer timer;
    timer.start();
    while (!received.contains(R"({"id":1,"result":{}})") && timer.elapsed() < 5000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        socket.waitForReadyRead(10);
        received += socket.readAll();
    }
    EXPECT_TRUE(received.startsWith("HTTP/1.1 101")) << received.constData();
    EXPECT_TRUE(received.contains(R"({"id":1,"result":{}})"));
}

TEST_F(DevToolsServerTest, ASecondClientIsTurnedAwayWhileOneIsAttached)
{
    attach();
    DevToolsClient second;
    second.open(url());
    ASSERT_TRUE(second.waitForDisconnect());
    EXPECT_EQ(second.socket().closeCode(), QWebSocketProtocol::CloseCodePolicyViolated);
    EXPECT_EQ(second.socket().closeReason(), "Another inspector client is already attached");
    EXPECT_EQ(client->call("DOM.enable").value("result").toObject(), QJsonObject());
}

TEST_F(DevToolsServerTest, TheTreeIsUntouchedWhileNoClientIsAttached)
{
    EXPECT_TRUE(mDevice->overlays()->children().isEmpty());
    attach();
    EXPECT_EQ(mDevice->overlays()->children().size(), 1);
    client->close();
    for (int i = 0; i < 10 && mDevice->inspector()->hasClient(); ++i)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(mDevice->inspector()->hasClient());
    EXPECT_TRUE(mDevice->overlays()->children().isEmpty());
}

} // namespace
