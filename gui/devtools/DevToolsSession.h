#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DevToolsDomTree.h"
#include "DevToolsOverlay.h"
#include "DevToolsScreencast.h"

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QPointer>

class DisplayDevice;
class QWebSocket;

// One attached developer-tools client: reads its JSON-RPC requests, answers them
// from the live tree of one display, and tells it how the tree changed since. All of
// it runs on the GUI thread, from the socket's signals and after each frame.
class ORBIS_UI_INTERNAL_EXPORT DevToolsSession : public QObject
{
    Q_OBJECT

public:
    // JSON-RPC error codes.
    static constexpr int kParseError = -32700;
    static constexpr int kInvalidRequest = -32600;
    static constexpr int kMethodNotFound = -32601;
    static constexpr int kInvalidParams = -32602;
    static constexpr int kServerError = -32000;

    // Takes ownership of the socket.
    DevToolsSession(QWebSocket* socket, DisplayDevice* device, QObject* parent = nullptr);
    ~DevToolsSession() override;

    void frameFinished();
    void handleMessage(const QString& text);
    DevToolsOverlay* overlay() const { return mOverlay; }

signals:
    void closed(DevToolsSession* session);
    // Every text message as it arrives, for recording what a client sends.
    void messageReceived(const QString& text);

private slots:
    void onBinaryMessage(const QByteArray& message);
    void onDisconnected();
    void onViewPicked(DisplayView* view);

private:
    // A handler's outcome: a result, an error, or a reply that follows later.
    struct Reply
    {
        QJsonObject result;
        int errorCode = 0;
        QString errorMessage;
        bool deferred = false;
    };
    using Handler = Reply (DevToolsSession::*)(const QJsonObject& params, int id);

    static Reply error(int code, const QString& message);
    static Reply deferred();
    void registerHandlers();
    void sendResult(int id, const QJsonObject& result);
    void sendError(const QJsonValue& id, int code, const QString& message);
    void sendEvent(const QString& method, const QJsonObject& params);
    void send(const QJsonObject& message);
    // The view a request names by nodeId or backendNodeId; sets `failure` when none.
    DisplayView* targetView(const QJsonObject& params, Reply* failure);

    Reply acknowledge(const QJsonObject& params, int id);
    Reply getDocument(const QJsonObject& params, int id);
    Reply requestChildNodes(const QJsonObject& params, int id);
    Reply getBoxModel(const QJsonObject& params, int id);
    Reply pushNodesByBackendIds(const QJsonObject& params, int id);
    Reply getComputedStyle(const QJsonObject& params, int id);
    Reply getMatchedStyles(const QJsonObject& params, int id);
    Reply highlightNode(const QJsonObject& params, int id);
    Reply hideHighlight(const QJsonObject& params, int id);
    Reply setInspectMode(const QJsonObject& params, int id);
    Reply captureScreenshot(const QJsonObject& params, int id);
    Reply startScreencast(const QJsonObject& params, int id);
    Reply stopScreencast(const QJsonObject& params, int id);
    Reply screencastFrameAck(const QJsonObject& params, int id);
    Reply getNodeForLocation(const QJsonObject& params, int id);

    QWebSocket* mSocket;
    DisplayDevice* mDevice;
    DevToolsDomTree mTree;
    QPointer<DevToolsOverlay> mOverlay;
    DevToolsScreencast mScreencast;
    QHash<QString, Handler> mHandlers;
};
