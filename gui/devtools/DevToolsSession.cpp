#include "DevToolsSession.h"

#include "DevToolsStyleReport.h"
#include "DisplayDevice.h"
#include "DisplayDeviceWidget.h"

#include <Logger.h>
#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QWebSocket>

namespace {
const char* const kLogSource = "gui/devtools/DevToolsSession";

QColor colorOf(const QJsonObject& config, const char* key, const QColor& fallback)
{
    const QJsonValue value = config.value(QLatin1String(key));
    if (!value.isObject())
        return fallback;
    const QJsonObject rgba = value.toObject();
    return QColor(rgba.value(QStringLiteral("r")).toInt(), rgba.value(QStringLiteral("g")).toInt(),
                  rgba.value(QStringLiteral("b")).toInt(),
                  qRound(rgba.value(QStringLiteral("a")).toDouble(1) * 255));
}

// The tools name each box colour; a box they leave out is not drawn.
DevToolsOverlay::Colors colorsOf(const QJsonObject& config)
{
    const QColor none(0, 0, 0, 0);
    return {colorOf(config, "contentColor", none), colorOf(config, "paddingColor", none),
            colorOf(config, "borderColor", none), colorOf(config, "marginColor", none)};
}

} // namespace

DevToolsSession::DevToolsSession(QWebSocket* socket, DisplayDevice* device, QObject* parent)
    : QObject(parent), mSocket(socket), mDevice(device),
      mTree(device, [this](const QString& method, const QJsonObject& params) { sendEvent(method, params); }),
      mOverlay(new DevToolsOverlay(device)), mScreencast(device, [this](const QJsonObject& frame) {
          sendEvent(QStringLiteral("Page.screencastFrame"), frame);
      })
{
    mSocket->setParent(this);
    mTree.setExcludedView(mOverlay);
    connect(mSocket, &QWebSocket::textMessageReceived, this, &DevToolsSession::handleMessage);
    connect(mSocket, &QWebSocket::binaryMessageReceived, this, &DevToolsSession::onBinaryMessage);
    connect(mSocket, &QWebSocket::disconnected, this, &DevToolsSession::onDisconnected);
    connect(mOverlay, &DevToolsOverlay::viewPicked, this, &DevToolsSession::onViewPicked);
    registerHandlers();
    ORBIS_INFO(QStringLiteral("Inspector client attached from %1").arg(mSocket->peerAddress().toString()));
}

DevToolsSession::~DevToolsSession()
{
    delete mOverlay.data();
    mSocket->disconnect(this);
}

void DevToolsSession::registerHandlers()
{
    const QStringList acknowledged = {QStringLiteral("DOM.enable"),     QStringLiteral("DOM.disable"),
                                      QStringLiteral("CSS.enable"),     QStringLiteral("CSS.disable"),
                                      QStringLiteral("Overlay.enable"), QStringLiteral("Overlay.disable"),
                                      QStringLiteral("Page.enable"),    QStringLiteral("Page.disable")};
    for (const QString& method : acknowledged)
        mHandlers.insert(method, &DevToolsSession::acknowledge);
    mHandlers.insert(QStringLiteral("DOM.getDocument"), &DevToolsSession::getDocument);
    mHandlers.insert(QStringLiteral("DOM.requestChildNodes"), &DevToolsSession::requestChildNodes);
    mHandlers.insert(QStringLiteral("DOM.getBoxModel"), &DevToolsSession::getBoxModel);
    mHandlers.insert(QStringLiteral("DOM.pushNodesByBackendIdsToFrontend"),
                     &DevToolsSession::pushNodesByBackendIds);
    mHandlers.insert(QStringLiteral("CSS.getComputedStyleForNode"), &DevToolsSession::getComputedStyle);
    mHandlers.insert(QStringLiteral("CSS.getMatchedStylesForNode"), &DevToolsSession::getMatchedStyles);
    mHandlers.insert(QStringLiteral("Overlay.highlightNode"), &DevToolsSession::highlightNode);
    mHandlers.insert(QStringLiteral("Overlay.hideHighlight"), &DevToolsSession::hideHighlight);
    mHandlers.insert(QStringLiteral("Overlay.setInspectMode"), &DevToolsSession::setInspectMode);
    mHandlers.insert(QStringLiteral("Page.captureScreenshot"), &DevToolsSession::captureScreenshot);
    mHandlers.insert(QStringLiteral("Page.startScreencast"), &DevToolsSession::startScreencast);
    mHandlers.insert(QStringLiteral("Page.stopScreencast"), &DevToolsSession::stopScreencast);
    mHandlers.insert(QStringLiteral("Page.screencastFrameAck"), &DevToolsSession::screencastFrameAck);
    mHandlers.insert(QStringLiteral("DOM.getNodeForLocation"), &DevToolsSession::getNodeForLocation);
}

void DevToolsSession::frameFinished()
{
    mTree.sync();
    mScreencast.frameFinished();
}

void DevToolsSession::handleMessage(const QString& text)
{
    emit messageReceived(text);
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        sendError(QJsonValue::Null, kParseError,
                  QStringLiteral("Parse error: %1 at offset %2")
                      .arg(parseError.errorString())
                      .arg(parseError.offset));
        return;
    }
    if (!document.isObject()) {
        sendError(QJsonValue::Null, kInvalidRequest,
                  QStringLiteral("Invalid request: the message must be an object"));
        return;
    }
    const QJsonObject message = document.object();
    const QJsonValue idValue = message.value(QStringLiteral("id"));
    const double idNumber = idValue.toDouble(-1);
    if (!idValue.isDouble() || idNumber < 0 || idNumber != double(int(idNumber))) {
        sendError(idValue.isUndefined() ? QJsonValue(QJsonValue::Null) : idValue, kInvalidRequest,
                  QStringLiteral("Invalid request: 'id' must be a non-negative integer"));
        return;
    }
    const int id = int(idNumber);
    const QJsonValue methodValue = message.value(QStringLiteral("method"));
    if (!methodValue.isString()) {
        sendError(id, kInvalidRequest, QStringLiteral("Invalid request: 'method' must be a string"));
        return;
    }
    const QString method = methodValue.toString();
    const QJsonValue params = message.value(QStringLiteral("params"));
    if (!params.isUndefined() && !params.isObject()) {
        sendError(id, kInvalidParams, QStringLiteral("Invalid parameters: 'params' must be an object"));
        return;
    }
    const Handler handler = mHandlers.value(method);
    if (!handler) {
        sendError(id, kMethodNotFound, QStringLiteral("'%1' wasn't found").arg(method));
        return;
    }
    // Answers describe the tree as it is now, so the client first hears what changed.
    mTree.sync();
    const Reply reply = (this->*handler)(params.toObject(), id);
    if (reply.deferred)
        return;
    if (reply.errorCode)
        sendError(id, reply.errorCode, reply.errorMessage);
    else
        sendResult(id, reply.result);
}

void DevToolsSession::onBinaryMessage(const QByteArray&)
{
    sendError(QJsonValue::Null, kInvalidRequest,
              QStringLiteral("Invalid request: binary messages are not supported"));
}

void DevToolsSession::onDisconnected()
{
    if (mSocket->closeCode() == QWebSocketProtocol::CloseCodeTooMuchData)
        ORBIS_WARN(QStringLiteral("Inspector client dropped: %1").arg(mSocket->closeReason()));
    ORBIS_INFO(QStringLiteral("Inspector client detached"));
    emit closed(this);
}

DevToolsSession::Reply DevToolsSession::error(int code, const QString& message)
{
    Reply reply;
    reply.errorCode = code;
    reply.errorMessage = message;
    return reply;
}

DevToolsSession::Reply DevToolsSession::deferred()
{
    Reply reply;
    reply.deferred = true;
    return reply;
}

void DevToolsSession::send(const QJsonObject& message)
{
    mSocket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}

void DevToolsSession::sendResult(int id, const QJsonObject& result)
{
    send(QJsonObject{{QStringLiteral("id"), id}, {QStringLiteral("result"), result}});
}

void DevToolsSession::sendError(const QJsonValue& id, int code, const QString& message)
{
    send(QJsonObject{{QStringLiteral("id"), id},
                     {QStringLiteral("error"),
                      QJsonObject{{QStringLiteral("code"), code}, {QStringLiteral("message"), message}}}});
}

void DevToolsSession::sendEvent(const QString& method, const QJsonObject& params)
{
    send(QJsonObject{{QStringLiteral("method"), method}, {QStringLiteral("params"), params}});
}

DisplayView* DevToolsSession::targetView(const QJsonObject& params, Reply* failure)
{
    QJsonValue id = params.value(QStringLiteral("nodeId"));
    if (id.isUndefined())
        id = params.value(QStringLiteral("backendNodeId"));
    if (!id.isDouble()) {
        *failure = error(kInvalidParams, QStringLiteral("Either nodeId or backendNodeId is required."));
        return nullptr;
    }
    DisplayView* view = mTree.view(id.toInt());
    if (!view || view->device() != mDevice || view == mOverlay)
        *failure = error(kServerError, QStringLiteral("Could not find node with given id"));
    return failure->errorCode ? nullptr : view;
}

DevToolsSession::Reply DevToolsSession::acknowledge(const QJsonObject&, int)
{
    return Reply();
}

DevToolsSession::Reply DevToolsSession::getDocument(const QJsonObject& params, int)
{
    const int depth = params.value(QStringLiteral("depth")).toInt(1);
    if (depth == 0 || depth < -1)
        return error(kInvalidParams,
                     QStringLiteral("Please provide a positive integer as a depth or -1 for entire subtree"));
    Reply reply;
    reply.result.insert(QStringLiteral("root"), mTree.document(depth));
    return reply;
}

DevToolsSession::Reply DevToolsSession::requestChildNodes(const QJsonObject& params, int)
{
    const int depth = params.value(QStringLiteral("depth")).toInt(1);
    if (depth == 0 || depth < -1)
        return error(kInvalidParams,
                     QStringLiteral("Please provide a positive integer as a depth or -1 for entire subtree"));
    const QJsonValue nodeId = params.value(QStringLiteral("nodeId"));
    if (!nodeId.isDouble())
        return error(kInvalidParams, QStringLiteral("Invalid parameters: 'nodeId' must be an integer"));
    if (!mTree.requestChildNodes(nodeId.toInt(), depth))
        return error(kServerError, QStringLiteral("Could not find node with given id"));
    return Reply();
}

DevToolsSession::Reply DevToolsSession::getBoxModel(const QJsonObject& params, int)
{
    Reply reply;
    if (DisplayView* view = targetView(params, &reply))
        reply.result = DevToolsStyleReport::boxModel(view);
    return reply;
}

DevToolsSession::Reply DevToolsSession::pushNodesByBackendIds(const QJsonObject& params, int)
{
    const QJsonValue ids = params.value(QStringLiteral("backendNodeIds"));
    if (!ids.isArray())
        return error(kInvalidParams, QStringLiteral("Invalid parameters: 'backendNodeIds' must be an array"));
    QJsonArray nodeIds;
    for (const QJsonValue& id : ids.toArray())
        nodeIds.append(mTree.pushView(mTree.view(id.toInt())));
    Reply reply;
    reply.result.insert(QStringLiteral("nodeIds"), nodeIds);
    return reply;
}

DevToolsSession::Reply DevToolsSession::getComputedStyle(const QJsonObject& params, int)
{
    Reply reply;
    if (DisplayView* view = targetView(params, &reply))
        reply.result.insert(QStringLiteral("computedStyle"),
                            DevToolsStyleReport::toCssProperties(DevToolsStyleReport::computedStyle(view)));
    return reply;
}

DevToolsSession::Reply DevToolsSession::getMatchedStyles(const QJsonObject& params, int)
{
    Reply reply;
    if (DisplayView* view = targetView(params, &reply))
        reply.result = DevToolsStyleReport::matchedStyles(view);
    return reply;
}

DevToolsSession::Reply DevToolsSession::highlightNode(const QJsonObject& params, int)
{
    Reply reply;
    DisplayView* view = targetView(params, &reply);
    if (view && mOverlay)
        mOverlay->highlight(view, colorsOf(params.value(QStringLiteral("highlightConfig")).toObject()));
    return reply;
}

DevToolsSession::Reply DevToolsSession::hideHighlight(const QJsonObject&, int)
{
    if (mOverlay)
        mOverlay->hideHighlight();
    return Reply();
}

DevToolsSession::Reply DevToolsSession::setInspectMode(const QJsonObject& params, int)
{
    const QString mode = params.value(QStringLiteral("mode")).toString();
    if (mode != QLatin1String("none") && mode != QLatin1String("searchForNode"))
        return error(kInvalidParams, QStringLiteral("Unsupported inspect mode: '%1'").arg(mode));
    const QJsonObject config = params.value(QStringLiteral("highlightConfig")).toObject();
    if (mOverlay)
        mOverlay->setInspectMode(mode == QLatin1String("searchForNode"),
                                 config.isEmpty() ? DevToolsOverlay::defaultColors() : colorsOf(config));
    return Reply();
}

void DevToolsSession::onViewPicked(DisplayView* view)
{
    mTree.sync();
    sendEvent(QStringLiteral("Overlay.inspectNodeRequested"),
              QJsonObject{{QStringLiteral("backendNodeId"), mTree.nodeId(view)}});
}

DevToolsSession::Reply DevToolsSession::captureScreenshot(const QJsonObject& params, int id)
{
    const QString format = params.value(QStringLiteral("format")).toString(QStringLiteral("png"));
    if (format != QLatin1String("png"))
        return error(kInvalidParams, QStringLiteral("Unsupported screenshot format: '%1'").arg(format));
    if (!mDevice->hasWindow() || !mDevice->widget()->isVisible())
        return error(kServerError, QStringLiteral("The display has no window to capture"));
    QPointer<DevToolsSession> self(this);
    mDevice->grabFrame([self, id](const QImage& frame) {
        // Encoded after the frame, not in it.
        if (!self)
            return;
        QMetaObject::invokeMethod(
            self,
            [self, id, frame] {
                QByteArray png;
                QBuffer buffer(&png);
                buffer.open(QIODevice::WriteOnly);
                frame.save(&buffer, "PNG");
                self->sendResult(id,
                                 QJsonObject{{QStringLiteral("data"), QString::fromLatin1(png.toBase64())}});
            },
            Qt::QueuedConnection);
    });
    return deferred();
}

DevToolsSession::Reply DevToolsSession::startScreencast(const QJsonObject& params, int)
{
    const QString failure = mScreencast.start(params);
    return failure.isEmpty() ? Reply() : error(kServerError, failure);
}

DevToolsSession::Reply DevToolsSession::stopScreencast(const QJsonObject&, int)
{
    mScreencast.stop();
    return Reply();
}

DevToolsSession::Reply DevToolsSession::screencastFrameAck(const QJsonObject& params, int)
{
    mScreencast.acknowledge(params.value(QStringLiteral("sessionId")).toInt());
    return Reply();
}

DevToolsSession::Reply DevToolsSession::getNodeForLocation(const QJsonObject& params, int)
{
    const QJsonValue x = params.value(QStringLiteral("x"));
    const QJsonValue y = params.value(QStringLiteral("y"));
    if (!x.isDouble() || !y.isDouble())
        return error(kInvalidParams, QStringLiteral("Invalid parameters: 'x' and 'y' must be numbers"));
    if (!mOverlay)
        return error(kServerError, QStringLiteral("No node found at given location"));
    DisplayView* view = mOverlay->viewAt(QPoint(x.toInt(), y.toInt()));
    Reply reply;
    reply.result.insert(QStringLiteral("backendNodeId"), mTree.nodeId(view));
    if (const int nodeId = mTree.pushView(view))
        reply.result.insert(QStringLiteral("nodeId"), nodeId);
    return reply;
}
