#include "DevToolsClient.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

namespace {
constexpr int kTimeoutMs = 10000;
}

DevToolsClient::DevToolsClient(std::function<void()> idle) : mIdle(std::move(idle))
{
    mSocket.setMaxAllowedIncomingMessageSize(64 * 1024 * 1024);
    QObject::connect(&mSocket, &QWebSocket::textMessageReceived, [this](const QString& text) {
        mMessages.append(QJsonDocument::fromJson(text.toUtf8()).object());
    });
}

bool DevToolsClient::pump(const std::function<bool()>& done)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > kTimeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (mIdle)
            mIdle();
        QThread::yieldCurrentThread();
    }
    return true;
}

bool DevToolsClient::open(const QString& url)
{
    mSocket.open(QUrl(url));
    return pump([this] {
               return mSocket.state() == QAbstractSocket::ConnectedState ||
                      mSocket.state() == QAbstractSocket::UnconnectedState;
           }) &&
           isConnected();
}

void DevToolsClient::close()
{
    mSocket.close();
    waitForDisconnect();
}

bool DevToolsClient::waitForDisconnect()
{
    return pump([this] { return mSocket.state() == QAbstractSocket::UnconnectedState; });
}

int DevToolsClient::send(const QString& method, const QJsonObject& params)
{
    const int id = mNextId++;
    QJsonObject message{{QStringLiteral("id"), id}, {QStringLiteral("method"), method}};
    if (!params.isEmpty())
        message.insert(QStringLiteral("params"), params);
    sendRaw(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    return id;
}

void DevToolsClient::sendRaw(const QString& text)
{
    mSocket.sendTextMessage(text);
    mSocket.flush();
}

QJsonObject DevToolsClient::reply(int id)
{
    return waitFor([id](const QJsonObject& m) {
        return m.contains(QStringLiteral("id")) && m.value(QStringLiteral("id")).toInt(-1) == id &&
               !m.contains(QStringLiteral("method"));
    });
}

QJsonObject DevToolsClient::call(const QString& method, const QJsonObject& params)
{
    return reply(send(method, params));
}

QJsonObject DevToolsClient::next()
{
    if (!pump([this] { return mRead < mMessages.size(); }))
        return QJsonObject();
    return mMessages.at(mRead++);
}

QJsonObject DevToolsClient::waitFor(const std::function<bool(const QJsonObject&)>& match)
{
    int found = -1;
    int scanned = 0;
    pump([&] {
        for (; scanned < mMessages.size(); ++scanned) {
            if (match(mMessages.at(scanned))) {
                found = scanned;
                return true;
            }
        }
        return false;
    });
    return found >= 0 ? mMessages.at(found) : QJsonObject();
}

QJsonObject DevToolsClient::waitForEvent(const QString& method)
{
    return waitFor(
        [&](const QJsonObject& m) { return m.value(QStringLiteral("method")).toString() == method; });
}

QList<QJsonObject> DevToolsClient::events(const QString& method) const
{
    QList<QJsonObject> found;
    for (const QJsonObject& m : mMessages) {
        if (m.value(QStringLiteral("method")).toString() == method)
            found.append(m.value(QStringLiteral("params")).toObject());
    }
    return found;
}

void DevToolsClient::clearMessages()
{
    mMessages.clear();
    mRead = 0;
}

QByteArray DevToolsClient::httpRequest(quint16 port, const QByteArray& method, const QString& path,
                                       int* status)
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    if (!socket.waitForConnected(kTimeoutMs))
        return QByteArray();
    socket.write(method + ' ' + path.toLatin1() + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) +
                 "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    QByteArray response;
    QElapsedTimer timer;
    timer.start();
    // The server closes the connection after its answer.
    while (socket.state() == QAbstractSocket::ConnectedState && timer.elapsed() < kTimeoutMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        socket.waitForReadyRead(10);
        response += socket.readAll();
    }
    response += socket.readAll();
    const int split = response.indexOf("\r\n\r\n");
    if (status)
        *status = response.split(' ').value(1).toInt();
    return split < 0 ? QByteArray() : response.mid(split + 4);
}

quint16 DevToolsClient::freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}
