#include "TestTileServer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTimer>

TestTileServer::TestTileServer()
{
    mServer.listen(QHostAddress::LocalHost, 0);
    connect(&mServer, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = mServer.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequest(socket); });
        }
    });
}

TestTileServer::~TestTileServer() = default;

QString TestTileServer::urlTemplate() const
{
    return QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(mServer.serverPort());
}

void TestTileServer::plan(const QString& path, int status, const QByteArray& body)
{
    mPlans[path].append({status, body});
}

QStringList TestTileServer::requestedPaths() const
{
    QStringList paths;
    for (const Request& r : mRequests)
        paths << r.path;
    return paths;
}

void TestTileServer::readRequest(QTcpSocket* socket)
{
    QByteArray buffered = socket->property("buffered").toByteArray() + socket->readAll();
    socket->setProperty("buffered", buffered);
    const int end = buffered.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    const QList<QByteArray> lines = buffered.left(end).split('\n');
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    Request request;
    request.path = QString::fromUtf8(requestLine.value(1));
    for (const QByteArray& line : lines) {
        if (line.toLower().startsWith("user-agent:"))
            request.userAgent = line.mid(11).trimmed();
    }
    socket->setProperty("buffered", QByteArray());
    mRequests.append(request);

    auto plan = mPlans.find(request.path);
    int status = 200;
    QByteArray body = defaultBody(request.path);
    if (plan != mPlans.end() && !plan->isEmpty()) {
        const QPair<int, QByteArray> next = plan->takeFirst();
        status = next.first;
        if (!next.second.isNull())
            body = next.second;
    } else if (mHoldAll) {
        status = kHold;
    }
    if (status == kHold) {
        mHeld.append({request.path, socket});
        return;
    }
    respond(socket, status, body);
}

bool TestTileServer::answer(const QString& path, int status, const QByteArray& body)
{
    for (int i = 0; i < mHeld.size(); ++i) {
        if (mHeld[i].first != path)
            continue;
        QPointer<QTcpSocket> socket = mHeld.takeAt(i).second;
        if (socket && socket->state() == QAbstractSocket::ConnectedState)
            respond(socket, status, body.isNull() ? defaultBody(path) : body);
        return true;
    }
    return false;
}

void TestTileServer::respond(QTcpSocket* socket, int status, const QByteArray& body)
{
    QByteArray reply = "HTTP/1.1 " + QByteArray::number(status) + " Status\r\n";
    reply +=
        "Content-Type: image/png\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
        "\r\n\r\n" + body;
    socket->write(reply);
    socket->disconnectFromHost();
}

bool TestTileServer::processUntil(const std::function<bool()>& done, int maxRounds)
{
    // Waits for events (sockets, other threads' answers); the ticker wakes the
    // loop now and then so that a broken test ends after maxRounds.
    QTimer ticker;
    ticker.start(10);
    for (int i = 0; i < maxRounds; ++i) {
        if (done())
            return true;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return done();
}
