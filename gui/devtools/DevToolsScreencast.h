#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QSize>
#include <functional>

class DisplayDevice;
class QImage;

// The display's frames streamed to the developer tools, which show them beside the
// tree. A frame goes out only when the display drew something new and the client
// acknowledged the previous one, so an idle display or a slow client costs nothing.
class ORBIS_UI_INTERNAL_EXPORT DevToolsScreencast : public QObject
{
    Q_OBJECT

public:
    using Sink = std::function<void(const QJsonObject& frameParams)>;

    DevToolsScreencast(DisplayDevice* device, Sink sink, QObject* parent = nullptr);

    // Starts with Page.startScreencast's parameters; the error text, or empty.
    QString start(const QJsonObject& params);
    void stop();
    void acknowledge(int sessionId);
    bool isRunning() const { return mRunning; }
    void frameFinished();

private:
    void deliver(const QImage& frame);

    DisplayDevice* mDevice;
    Sink mSink;
    bool mRunning = false;
    bool mAwaitingAck = false;
    bool mGrabPending = false;
    QByteArray mFormat;
    int mQuality = 80;
    QSize mMaxSize;
    int mEveryNth = 1;
    int mFrameCount = 0;
    int mSessionId = 0;
    int mCapturedDrawn = -1; // the device's drawn-frame count of the last frame sent
};
