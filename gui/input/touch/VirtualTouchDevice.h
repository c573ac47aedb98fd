#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QPoint>
#include <QSize>
#include <QString>
#include <QVector>
#include <linux/input.h>

struct uinput_user_dev;

/// A synthetic multi-touch controller: describes itself to uinput and sends slot-protocol
/// frames, so that the whole input path, driver included, runs without a screen or a
/// finger. Writes to any descriptor; on one that is not uinput the ioctls are skipped and
/// the description and events are simply written out.
class ORBIS_UI_EXPORT VirtualTouchDevice
{
public:
    static constexpr int kMaxSlots = 10;
    static constexpr const char* kName = "Orbis virtual touch";

    /// Does not take the descriptor; see open() for one that it owns.
    VirtualTouchDevice(int fd, QSize screen);
    VirtualTouchDevice();
    ~VirtualTouchDevice();
    VirtualTouchDevice(const VirtualTouchDevice&) = delete;
    VirtualTouchDevice& operator=(const VirtualTouchDevice&) = delete;

    /// Opens the uinput node for writing. A missing device is logged and returns false.
    bool open(QSize screen, const QString& path = QStringLiteral("/dev/uinput"));
    /// Describes the device and, on uinput, creates it.
    bool create();
    void setStruct(uinput_user_dev* device) const;
    /// Declares the event types and codes; false when fd does not accept uinput ioctls.
    bool setBits(int fd);

    bool sendTouched(int slot, QPoint point);
    bool sendDragged(int slot, QPoint point);
    bool sendReleased(int slot, QPoint point);

private:
    void add(int type, int code, int value);
    bool flush();
    /// Selects the slot and places the finger; false for a slot outside the table.
    bool beginFrame(int slot, QPoint point);

    int mFd = -1;
    bool mOwnsFd = false;
    bool mUinput = false;
    QSize mScreen;
    int mNextTrackingId = 1;
    quint32 mDown = 0;
    QVector<input_event> mFrame;
};
