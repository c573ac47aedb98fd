#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <memory>

class DisplayDevice;
class DevToolsSession;
class QTcpSocket;
class QWebSocketServer;

// Serves one display's live view tree to the browser's developer tools, on
// 127.0.0.1 only: the discovery documents /json (also /json/list) and /json/version
// over plain HTTP, and the protocol itself over a WebSocket at
// /devtools/page/<target id>. One client at a time; while none is attached the
// server does no work at all. Runs on the GUI thread.
class ORBIS_UI_INTERNAL_EXPORT DevToolsServer : public QObject
{
    Q_OBJECT

public:
    // Incoming WebSocket messages larger than this close the connection.
    static constexpr qint64 kMaxMessageBytes = 1024 * 1024;
    static constexpr int kMaxRequestHeaderBytes = 16 * 1024;

    explicit DevToolsServer(DisplayDevice* device, QObject* parent = nullptr);
    ~DevToolsServer() override;

    // The port of "ui/inspector_port" (0: the inspector is off).
    static int configuredPort();

    // Listens on 127.0.0.1; port 0 picks a free one. Reports and returns false when
    // the port cannot be had.
    bool listen(quint16 port);
    quint16 serverPort() const { return mTcp.serverPort(); }
    QString targetId() const;
    QString webSocketPath() const;
    DevToolsSession* session() const;
    bool hasClient() const { return !mSession.isNull(); }

    // The device finished a frame: the client hears what changed.
    void frameFinished();

signals:
    void clientAttached(DevToolsSession* session);

private slots:
    void onNewConnection();
    void onRequestData();
    void onWebSocketConnection();
    void onSessionClosed(DevToolsSession* session);

private:
    void respond(QTcpSocket* socket, int status, const QByteArray& contentType, const QByteArray& body);
    QByteArray targetList() const;
    QByteArray versionInfo() const;

    DisplayDevice* mDevice;
    QTcpServer mTcp;
    std::unique_ptr<QWebSocketServer> mWebSockets;
    QPointer<DevToolsSession> mSession;
};
