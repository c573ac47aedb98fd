#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QWebSocket>
#include <functional>

// A developer-tools client for tests: talks to an inspector server on 127.0.0.1,
// keeps every message it receives in arrival order, and waits for answers within a
// bounded time while the event loop runs. `idle` is called while waiting (a test
// runs the display's frames there).
class DevToolsClient
{
public:
    explicit DevToolsClient(std::function<void()> idle = {});

    bool open(const QString& url);
    void close();
    bool isConnected() const { return mSocket.state() == QAbstractSocket::ConnectedState; }
    QWebSocket& socket() { return mSocket; }

    // Sends a request and returns the whole reply (with "result" or "error"), or an
    // empty object when none came in time.
    QJsonObject call(const QString& method, const QJsonObject& params = QJsonObject());
    QJsonObject result(const QString& method, const QJsonObject& params = QJsonObject())
    {
        return call(method, params).value(QStringLiteral("result")).toObject();
    }
    int send(const QString& method, const QJsonObject& params = QJsonObject());
    void sendRaw(const QString& text);
    // The reply to request `id`, waiting for it.
    QJsonObject reply(int id);
    // The next message that was not looked at yet (waiting for one).
    QJsonObject next();
    // Waits until a message satisfies `match`; returns it or an empty object.
    QJsonObject waitFor(const std::function<bool(const QJsonObject&)>& match);
    QJsonObject waitForEvent(const QString& method);
    bool waitForDisconnect();

    const QList<QJsonObject>& messages() const { return mMessages; }
    QList<QJsonObject> events(const QString& method) const;
    void clearMessages();

    // A port of 127.0.0.1 that nobody listens on at the moment.
    static quint16 freePort();
    // A GET request on 127.0.0.1: the body, or empty on failure; `status` gets the HTTP status.
    static QByteArray httpGet(quint16 port, const QString& path, int* status = nullptr)
    {
        return httpRequest(port, "GET", path, status);
    }
    static QByteArray httpRequest(quint16 port, const QByteArray& method, const QString& path,
                                  int* status = nullptr);

private:
    bool pump(const std::function<bool()>& done);

    QWebSocket mSocket;
    std::function<void()> mIdle;
    QList<QJsonObject> mMessages;
    int mRead = 0;
    int mNextId = 1;
};
