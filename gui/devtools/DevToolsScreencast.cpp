#include "DevToolsScreencast.h"

#include "DisplayDevice.h"
#include "DisplayDeviceWidget.h"

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <QPointer>

DevToolsScreencast::DevToolsScreencast(DisplayDevice* device, Sink sink, QObject* parent)
    : QObject(parent), mDevice(device), mSink(std::move(sink))
{}

QString DevToolsScreencast::start(const QJsonObject& params)
{
    const QString format = params.value(QStringLiteral("format")).toString(QStringLiteral("jpeg"));
    if (format != QLatin1String("jpeg") && format != QLatin1String("png"))
        return QStringLiteral("Unsupported screencast format: '%1'").arg(format);
    if (!mDevice->hasWindow() || !mDevice->widget()->isVisible())
        return QStringLiteral("The display has no window to capture");
    mFormat = format.toLatin1();
    mQuality = qBound(0, params.value(QStringLiteral("quality")).toInt(80), 100);
    mMaxSize = QSize(params.value(QStringLiteral("maxWidth")).toInt(0),
                     params.value(QStringLiteral("maxHeight")).toInt(0));
    mEveryNth = qMax(1, params.value(QStringLiteral("everyNthFrame")).toInt(1));
    mRunning = true;
    mAwaitingAck = false;
    mCapturedDrawn = -1;
    mFrameCount = 0;
    return QString();
}

void DevToolsScreencast::stop()
{
    mRunning = false;
    mAwaitingAck = false;
}

void DevToolsScreencast::acknowledge(int sessionId)
{
    if (sessionId == mSessionId)
        mAwaitingAck = false;
}

void DevToolsScreencast::frameFinished()
{
    if (!mRunning || mAwaitingAck || mGrabPending || mDevice->frameStats().drawnFrames == mCapturedDrawn)
        return;
    if (mFrameCount++ % mEveryNth)
        return;
    mGrabPending = true;
    QPointer<DevToolsScreencast> self(this);
    mDevice->grabFrame([self](const QImage& frame) {
        if (!self)
            return;
        // This frame is counted as drawn once it is swapped; the capture itself
        // must not count as news.
        self->mCapturedDrawn = self->mDevice->frameStats().drawnFrames + 1;
        QMetaObject::invokeMethod(
            self, [self, frame] { self->deliver(frame); }, Qt::QueuedConnection);
    });
}

void DevToolsScreencast::deliver(const QImage& frame)
{
    mGrabPending = false;
    if (!mRunning)
        return;
    QImage image = frame;
    const QSize limit(mMaxSize.width() > 0 ? mMaxSize.width() : frame.width(),
                      mMaxSize.height() > 0 ? mMaxSize.height() : frame.height());
    if (frame.width() > limit.width() || frame.height() > limit.height())
        image = frame.scaled(limit, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QByteArray encoded;
    QBuffer buffer(&encoded);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, mFormat == "png" ? "PNG" : "JPEG", mFormat == "png" ? -1 : mQuality);
    mAwaitingAck = true;
    const QJsonObject metadata{{QStringLiteral("offsetTop"), 0},
                               {QStringLiteral("pageScaleFactor"), 1},
                               {QStringLiteral("deviceWidth"), mDevice->width()},
                               {QStringLiteral("deviceHeight"), mDevice->height()},
                               {QStringLiteral("scrollOffsetX"), 0},
                               {QStringLiteral("scrollOffsetY"), 0},
                               {QStringLiteral("timestamp"), QDateTime::currentMSecsSinceEpoch() / 1000.0}};
    mSink(QJsonObject{{QStringLiteral("data"), QString::fromLatin1(encoded.toBase64())},
                      {QStringLiteral("metadata"), metadata},
                      {QStringLiteral("sessionId"), ++mSessionId}});
}
