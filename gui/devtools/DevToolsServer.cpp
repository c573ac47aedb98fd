#include "DevToolsServer.h"
#include "OrbisUIFrameworkVersion.h"

#include "DevToolsSession.h"
#include "DisplayDevice.h"

#include <ConfigValue.h>
#include <Logger.h>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QWebSocket>
#include <QWebSocketServer>

static const char* const kLogSource = "../../../gui/devtools/DevToolsServer";

static ConfigIntValue gInspectorPort("ui/inspector_port", 0);

namespace {

QByteArray statusText(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 431:
        return "Request Header Fields Too Large";
    default:
        return "Bad Request";
    }
}

} // namespace

DevToolsServer::DevToolsServer(DisplayDevice* device, QObject* parent)
    : QObject(parent), mDevice(device),
      mWebSockets(std::make_unique<QWebSocketServer>(QStringLiteral("OrbisUIFramework"),
                                                     QWebSocketServer::NonSecureMode))
{
    connect(&mTcp, &QTcpServer::newConnection, this, &DevToolsServer::onNewConnection);
    connect(mWebSockets.get(), &QWebSocketServer::newConnection, this,
            &DevToolsServer::onWebSocketConnection);
}

DevToolsServer::~DevToolsServer()
{
    delete mSession.data();
}

int DevToolsServer::configuredPort()
{
    return gInspectorPort.value();
}

bool DevToolsServer::listen(quint16 port)
{
    if (!mTcp.listen(QHostAddress::LocalHost, port)) {
        ORBIS_FAIL(QStringLiteral("The inspector cannot listen on 127.0.0.1:%1: %2")
                       .arg(port)
                       .arg(mTcp.errorString()));
        return false;
    }
    ORBIS_INFO(QStringLiteral("Inspector listening on http://127.0.0.1:%1/json").arg(mTcp.serverPort()));
    return true;
}

DevToolsSession* DevToolsServer::session() const
{
    return mSession;
}

QString DevToolsServer::targetId() const
{
    return QStringLiteral("display%1").arg(mDevice->screen());
}

QString DevToolsServer::webSocketPath() const
{
    return QStringLiteral("/devtools/page/") + targetId();
}

void DevToolsServer::frameFinished()
{
    if (mSession)
        mSession->frameFinished();
}

void DevToolsServer::onNewConnection()
{
    while (QTcpSocket* socket = mTcp.nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, this, &DevToolsServer::onRequestData);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
}

void DevToolsServer::onRequestData()
{
    auto* socket = qobject_cast<QTcpSocket*>(sender());
    if (!socket)
        return;
    // Only peeked: an upgrade hands the untouched request to the WebSocket server.
    const QByteArray head = socket->peek(kMaxRequestHeaderBytes + 4);
    const int end = head.indexOf("\r\n\r\n");
    if (end < 0) {
        if (head.size() > kMaxRequestHeaderBytes)
            respond(socket, 431, "text/plain", "Request header too large\n");
        return;
    }
    const QList<QByteArray> lines = head.left(end).split('\n');
    const QList<QByteArray> requestLine = lines.first().trimmed().split(' ');
    if (requestLine.size() != 3) {
        respond(socket, 400, "text/plain", "Malformed request line\n");
        return;
    }
    const QByteArray method = requestLine[0];
    const QByteArray path = requestLine[1].split('?').first();
    bool upgrade = false;
    for (const QByteArray& line : lines.mid(1)) {
        const int colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == "upgrade")
            upgrade = line.mid(colon + 1).trimmed().toLower() == "websocket";
    }
    if (method != "GET") {
        respond(socket, 405, "text/plain", "Only GET is served\n");
    } else if (upgrade) {
        if (path != webSocketPath().toLatin1()) {
            respond(socket, 404, "text/plain", "No such target: " + path + "\n");
            return;
        }
        disconnect(socket, nullptr, this, nullptr);
        disconnect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        mWebSockets->handleConnection(socket);
    } else if (path == "/json" || path == "/json/" || path == "/json/list" || path == "/json/list/") {
        respond(socket, 200, "application/json; charset=UTF-8", targetList());
    } else if (path == "/json/version" || path == "/json/version/") {
        respond(socket, 200, "application/json; charset=UTF-8", versionInfo());
    } else {
        respond(socket, 404, "text/plain", "Not found: " + path + "\n");
    }
}

void DevToolsServer::respond(QTcpSocket* socket, int status, const QByteArray& contentType,
                             const QByteArray& body)
{
    socket->readAll();
    disconnect(socket, &QTcpSocket::readyRead, this, &DevToolsServer::onRequestData);
    QByteArray response = "HTTP/1.1 " + QByteArray::number(status) + ' ' + statusText(status) + "\r\n";
    response += "Content-Type: " + contentType + "\r\n";
    response += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    response += "Connection: close\r\n\r\n";
    socket->write(response + body);
    socket->disconnectFromHost();
}

QByteArray DevToolsServer::targetList() const
{
    const QString address = QStringLiteral("127.0.0.1:%1").arg(mTcp.serverPort());
    QJsonObject target{{QStringLiteral("id"), targetId()},
                       {QStringLiteral("type"), QStringLiteral("page")},
                       {QStringLiteral("title"), QStringLiteral("Display %1 (%2x%3)")
                                                     .arg(mDevice->screen())
                                                     .arg(mDevice->width())
                                                     .arg(mDevice->height())},
                       {QStringLiteral("url"), QStringLiteral("orbis://display/%1").arg(mDevice->screen())},
                       {QStringLiteral("description"), QStringLiteral("The live view tree of the display")},
                       {QStringLiteral("devtoolsFrontendUrl"),
                        QStringLiteral("/devtools/inspector.html?ws=%1%2").arg(address, webSocketPath())}};
    // As browsers do, the socket is only offered while nobody is attached.
    if (!mSession)
        target.insert(QStringLiteral("webSocketDebuggerUrl"),
                      QStringLiteral("ws://%1%2").arg(address, webSocketPath()));
    return QJsonDocument(QJsonArray{target}).toJson();
}

QByteArray DevToolsServer::versionInfo() const
{
    const QJsonObject version{
        {QStringLiteral("Browser"), QStringLiteral("OrbisUIFramework/" ORBIS_FRAMEWORK_VERSION)},
        {QStringLiteral("Protocol-Version"), QStringLiteral("1.3")},
        {QStringLiteral("User-Agent"),
         QStringLiteral("OrbisUIFramework/" ORBIS_FRAMEWORK_VERSION " Qt/" QT_VERSION_STR)}};
    return QJsonDocument(version).toJson();
}

void DevToolsServer::onWebSocketConnection()
{
    while (QWebSocket* socket = mWebSockets->nextPendingConnection()) {
        if (mSession) {
            ORBIS_WARN(QStringLiteral("Inspector refused a second client from %1")
                           .arg(socket->peerAddress().toString()));
            socket->close(QWebSocketProtocol::CloseCodePolicyViolated,
                          QStringLiteral("Another inspector client is already attached"));
            // Gone once the close handshake ends, and with the server if it never does.
            socket->setParent(this);
            connect(socket, &QWebSocket::disconnected, socket, &QObject::deleteLater);
            continue;
        }
        socket->setMaxAllowedIncomingFrameSize(kMaxMessageBytes);
        socket->setMaxAllowedIncomingMessageSize(kMaxMessageBytes);
        mSession = new DevToolsSession(socket, mDevice, this);
        connect(mSession, &DevToolsSession::closed, this, &DevToolsServer::onSessionClosed);
        emit clientAttached(mSession);
    }
}

void DevToolsServer::onSessionClosed(DevToolsSession* session)
{
    if (session == mSession)
        mSession = nullptr;
    session->deleteLater();
}
