#include "InspectorSession.h"

#include "DisplayDevice.h"
#include "DisplayDeviceWidget.h"
#include "InspectorStyleReport.h"

#include <Logger.h>
#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QWebSocket>

namespace {
const char* const kLogSource = "gui/inspector/InspectorSession";

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
InspectorOverlay::Colors colorsOf(const QJsonObject& config)
{
    const QColor none(0, 0, 0, 0);
    return {colorOf(config, "contentColor", none), colorOf(config, "paddingColor", none),
            colorOf(config, "borderColor", none), colorOf(config, "marginColor", none)};
}

} // namespace

InspectorSession::InspectorSession(QWebSocket* socket, DisplayDevice* device, QObject* parent)
    : QObject(parent), mSocket(socket), mDevice(device),
      mTree(device, [this](const QString& method, const QJsonObject& params) { sendEvent(method, params); }),
      mOverlay(new InspectorOverlay(device)), mScreencast(device, [this](const QJsonObject& frame) {
          sendEvent(QStringLiteral("Page.screencastFrame"), frame);
      })
{
    mSocket->setParent(this);
    mTree.setExcludedView(mOverlay);
    connect(mSocket, &QWebSocket::textMessageReceived, this, &InspectorSession::handleMessage);
    connect(mSocket, &QWebSocket::binaryMessageReceived, this, &InspectorSession::onBinaryMessage);
    connect(mSocket, &QWebSocket::disconnected, this, &InspectorSession::onDisconnected);
    connect(mOverlay, &InspectorOverlay::viewPicked, this, &InspectorSession::onViewPicked);
    registerHandlers();
    ORBIS_INFO(QStringLiteral("Inspector client attached from %1").arg(mSocket->peerAddress().toString()));
}

InspectorSession::~InspectorSession()
{
    delete mOverlay.data();
    mSocket->disconnect(this);
}

void InspectorSession::registerHandlers()
{
    const QStringList acknowledged = {QStringLiteral("DOM.enable"),     QStringLiteral("DOM.disable"),
                                      QStringLiteral("CSS.enable"),     QStringLiteral("CSS.disable"),
                                      QStringLiteral("Overlay.enable"), QStringLiteral("Overlay.disable"),
                                      QStringLiteral("Page.enable"),    QStringLiteral("Page.disable")};
    for (const QString& method : acknowledged)
        mHandlers.insert(method, &InspectorSession::acknowledge);
    mHandlers.insert(QStringLiteral("DOM.getDocument"), &InspectorSession::getDocument);
    mHandlers.insert(QStringLiteral("DOM.requestChildNodes"), &InspectorSession::requestChildNodes);
    mHandlers.insert(QStringLiteral("DOM.getBoxModel"), &InspectorSession::getBoxModel);
    mHandlers.insert(QStringLiteral("DOM.pushNodesByBackendIdsToFrontend"),
                     &InspectorSession::pushNodesByBackendIds);
    mHandlers.insert(QStringLiteral("CSS.getComputedStyleForNode"), &InspectorSession::getComputedStyle);
    mHandlers.insert(QStringLiteral("CSS.getMatchedStylesForNode"), &InspectorSession::getMatchedStyles);
    mHandlers.insert(QStringLiteral("Overlay.highlightNode"), &InspectorSession::highlightNode);
    mHandlers.insert(QStringLiteral("Overlay.hideHighlight"), &InspectorSession::hideHighlight);
    mHandlers.insert(QStringLiteral("Overlay.setInspectMode"), &InspectorSession::setInspectMode);
    mHandlers.insert(QStringLiteral("Page.captureScreenshot"), &InspectorSession::captureScreenshot);
    mHandlers.insert(QStringLiteral("Page.startScreencast"), &InspectorSession::startScreencast);
    mHandlers.insert(QStringLiteral("Page.stopScreencast"), &InspectorSession::stopScreencast);
    mHandlers.insert(QStringLiteral("Page.screencastFrameAck"), &InspectorSession::screencastFrameAck);
    mHandlers.insert(QStringLiteral("DOM.getNodeForLocation"), &InspectorSession::getNodeForLocation);
}

void InspectorSession::frameFinished()
{
    mTree.sync();
    mScreencast.frameFinished();
}

void InspectorSession::handleMessage(const QString& text)
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

void InspectorSession::onBinaryMessage(const QByteArray&)
{
    sendError(QJsonValue::Null, kInvalidRequest,
              QStringLiteral("Invalid request: binary messages are not supported"));
}

void InspectorSession::onDisconnected()
{
    if (mSocket->closeCode() == QWebSocketProtocol::CloseCodeTooMuchData)
        ORBIS_WARN(QStringLiteral("Inspector client dropped: %1").arg(mSocket->closeReason()));
    ORBIS_INFO(QStringLiteral("Inspector client detached"));
    emit closed(this);
}

InspectorSession::Reply InspectorSession::error(int code, const QString& message)
{
    Reply reply;
    reply.errorCode = code;
    reply.errorMessage = message;
    return reply;
}

InspectorSession::Reply InspectorSession::deferred()
{
    Reply reply;
    reply.deferred = true;
    return reply;
}

void InspectorSession::send(const QJsonObject& message)
{
    mSocket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}

void InspectorSession::sendResult(int id, const QJsonObject& result)
{
    send(QJsonObject{{QStringLiteral("id"), id}, {QStringLiteral("result"), result}});
}

void InspectorSession::sendError(const QJsonValue& id, int code, const QString& message)
{
    send(QJsonObject{{QStringLiteral("id"), id},
                     {QStringLiteral("error"),
                      QJsonObject{{QStringLiteral("code"), code}, {QStringLiteral("message"), message}}}});
}

void InspectorSession::sendEvent(const QString& method, const QJsonObject& params)
{
    send(QJsonObject{{QStringLiteral("method"), method}, {QStringLiteral("params"), params}});
}

DisplayView* InspectorSession::targetView(const QJsonObject& params, Reply* failure)
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

InspectorSession::Reply InspectorSession::acknowledge(const QJsonObject&, int)
{
    return Reply();
}

InspectorSession::Reply InspectorSession::getDocument(const QJsonObject& params, int)
{
    const int depth = params.value(QStringLiteral("depth")).toInt(1);
    if (depth == 0 || depth < -1)
        return error(kInvalidParams,
                     QStringLiteral("Please provide a positive integer as a depth or -1 for entire subtree"));
    Reply reply;
    reply.result.insert(QStringLiteral("root"), mTree.document(depth));
    return reply;
}

InspectorSession::Reply InspectorSession::requestChildNodes(const QJsonObject& params, int)
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

InspectorSession::Reply InspectorSession::getBoxModel(const QJsonObject& params, int)
{
    Reply reply;
    if (DisplayView* view = targetView(params, &reply))
        reply.result = InspectorStyleReport::boxModel(view);
    return reply;
}

InspectorSession::Reply InspectorSession::pushNodesByBackendIds(const QJsonObject& params, int)
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

InspectorSession::Reply InspectorSession::getComputedStyle(const QJsonObject& params, int)
{
    Reply reply;
    if (DisplayView* view = targetView(params, &reply))
        reply.result.insert(QStringLiteral("computedStyle"),
                            InspectorStyleReport::toCssProperties(InspectorStyleReport::computedStyle(view)));
    return reply;
}

InspectorSession::Reply InspectorSession::getMatchedStyles(const QJsonObject& params, int)
{
    Reply reply;
    if (DisplayView* view = targetView(params, &reply))
        reply.result = InspectorStyleReport::matchedStyles(view);
    return reply;
}

InspectorSession::Reply InspectorSession::highlightNode(const QJsonObject& params, int)
{
    Reply reply;
    DisplayView* view = targetView(params, &reply);
    if (view && mOverlay)
        mOverlay->highlight(view, colorsOf(params.value(QStringLiteral("highlightConfig")).toObject()));
    return reply;
}

InspectorSession::Reply InspectorSession::hideHighlight(const QJsonObject&, int)
{
    if (mOverlay)
        mOverlay->hideHighlight();
    return Reply();
}

InspectorSession::Reply InspectorSession::setInspectMode(const QJsonObject& params, int)
{
    const QString mode = params.value(QStringLiteral("mode")).toString();
    if (mode != QLatin1String("none") && mode != QLatin1String("searchForNode"))
        return error(kInvalidParams, QStringLiteral("Unsupported inspect mode: '%1'").arg(mode));
    const QJsonObject config = params.value(QStringLiteral("highlightConfig")).toObject();
    if (mOverlay)
        mOverlay->setInspectMode(mode == QLatin1String("searchForNode"),
                                 config.isEmpty() ? InspectorOverlay::defaultColors() : colorsOf(config));
    return Reply();
}

void InspectorSession::onViewPicked(DisplayView* view)
{
    mTree.sync();
    sendEvent(QStringLiteral("Overlay.inspectNodeRequested"),
              QJsonObject{{QStringLiteral("backendNodeId"), mTree.nodeId(view)}});
}

InspectorSession::Reply InspectorSession::captureScreenshot(const QJsonObject& params, int id)
{
    const QString format = params.value(QStringLiteral("format")).toString(QStringLiteral("png"));
    if (format != QLatin1String("png"))
        return error(kInvalidParams, QStringLiteral("Unsupported screenshot format: '%1'").arg(format));
    if (!mDevice->hasWindow() || !mDevice->widget()->isVisible())
        return error(kServerError, QStringLiteral("The display has no window to capture"));
    QPointer<InspectorSession> self(this);
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

InspectorSession::Reply InspectorSession::startScreencast(const QJsonObject& params, int)
{
    const QString failure = mScreencast.start(params);
    return failure.isEmpty() ? Reply() : error(kServerError, failure);
}

InspectorSession::Reply InspectorSession::stopScreencast(const QJsonObject&, int)
{
    mScreencast.stop();
    return Reply();
}

InspectorSession::Reply InspectorSession::screencastFrameAck(const QJsonObject& params, int)
{
    mScreencast.acknowledge(params.value(QStringLiteral("sessionId")).toInt());
    return Reply();
}

InspectorSession::Reply InspectorSession::getNodeForLocation(const QJsonObject& params, int)
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
