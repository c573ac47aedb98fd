#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>

class QTcpSocket;

// A tile server on 127.0.0.1 for the tests of the HTTP tile source. Each path
// answers from its plan (status and body, one answer per request), then 200 with a
// body naming the path; a held request gets no answer until the test gives one.
class TestTileServer : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QString path;
        QByteArray userAgent;
    };
    static constexpr int kHold = -1;

    TestTileServer();
    ~TestTileServer() override;

    bool isListening() const { return mServer.isListening(); }
    QString urlTemplate() const;

    void plan(const QString& path, int status, const QByteArray& body = QByteArray());
    void holdAll(bool hold) { mHoldAll = hold; }
    // Answers the oldest held request for `path`; false when none is held.
    bool answer(const QString& path, int status = 200, const QByteArray& body = QByteArray());

    const QList<Request>& requests() const { return mRequests; }
    QStringList requestedPaths() const;
    int heldCount() const { return mHeld.size(); }
    static QByteArray defaultBody(const QString& path) { return "tile:" + path.toUtf8(); }

    // Runs the event loop until `done` holds or `maxRounds` rounds of events passed.
    static bool processUntil(const std::function<bool()>& done, int maxRounds = 2000);

private:
    void readRequest(QTcpSocket* socket);
    static void respond(QTcpSocket* socket, int status, const QByteArray& body);

    QTcpServer mServer;
    QHash<QString, QList<QPair<int, QByteArray>>> mPlans;
    QList<QPair<QString, QPointer<QTcpSocket>>> mHeld;
    QList<Request> mRequests;
    bool mHoldAll = false;
};
