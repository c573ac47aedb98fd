#include "VirtualTouchDevice.h"

#include "Logger.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

static const char* const kLogSource = "../../../gui/input/touch/VirtualTouchDevice";

VirtualTouchDevice::VirtualTouchDevice(int fd, QSize screen) : mFd(fd), mScreen(screen) {}

VirtualTouchDevice::VirtualTouchDevice() = default;

VirtualTouchDevice::~VirtualTouchDevice()
{
    if (mUinput)
        ioctl(mFd, UI_DEV_DESTROY);
    if (mOwnsFd)
        ::close(mFd);
}

bool VirtualTouchDevice::open(QSize screen, const QString& path)
{
    const int fd = ::open(path.toLocal8Bit().constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        ORBIS_ERROR(QStringLiteral("Cannot open virtual touch device %1: %2")
                        .arg(path, QString::fromLocal8Bit(strerror(errno))));
        return false;
    }
    if (mOwnsFd)
        ::close(mFd);
    mFd = fd;
    mOwnsFd = true;
    mScreen = screen;
    return true;
}

void VirtualTouchDevice::setStruct(uinput_user_dev* device) const
{
    memset(device, 0, sizeof(*device));
    strncpy(device->name, kName, UINPUT_MAX_NAME_SIZE - 1);
    device->id.bustype = BUS_VIRTUAL;
    device->id.vendor = 0x1;
    device->id.product = 0x1;
    device->id.version = 1;
    device->absmax[ABS_MT_SLOT] = kMaxSlots - 1;
    device->absmax[ABS_MT_TRACKING_ID] = 0xffff;
    device->absmax[ABS_MT_POSITION_X] = device->absmax[ABS_X] = mScreen.width() - 1;
    device->absmax[ABS_MT_POSITION_Y] = device->absmax[ABS_Y] = mScreen.height() - 1;
}

bool VirtualTouchDevice::setBits(int fd)
{
    if (ioctl(fd, UI_SET_EVBIT, EV_SYN) < 0)
        return false;
    ioctl(fd, UI_SET_EVBIT, EV_KEY);
    ioctl(fd, UI_SET_EVBIT, EV_ABS);
    ioctl(fd, UI_SET_KEYBIT, BTN_TOUCH);
    for (int code : {ABS_X, ABS_Y, ABS_MT_SLOT, ABS_MT_TRACKING_ID, ABS_MT_POSITION_X, ABS_MT_POSITION_Y})
        ioctl(fd, UI_SET_ABSBIT, code);
    ioctl(fd, UI_SET_PROPBIT, INPUT_PROP_DIRECT);
    return true;
}

bool VirtualTouchDevice::create()
{
    if (!ORBIS_ASSERT(mFd >= 0, QStringLiteral("Virtual touch device has no descriptor")))
        return false;
    mUinput = setBits(mFd);
    uinput_user_dev device;
    setStruct(&device);
    if (::write(mFd, &device, sizeof(device)) != ssize_t(sizeof(device))) {
        ORBIS_ERROR(QStringLiteral("Cannot describe virtual touch device: %1")
                        .arg(QString::fromLocal8Bit(strerror(errno))));
        return false;
    }
    if (mUinput && ioctl(mFd, UI_DEV_CREATE) < 0) {
        ORBIS_ERROR(QStringLiteral("Cannot create virtual touch device: %1")
                        .arg(QString::fromLocal8Bit(strerror(errno))));
        mUinput = false;
        return false;
    }
    return true;
}

bool VirtualTouchDevice::sendTouched(int slot, QPoint point)
{
    if (!beginFrame(slot, point))
        return false;
    add(EV_ABS, ABS_MT_TRACKING_ID, mNextTrackingId++ & 0xffff);
    if (mDown == 0)
        add(EV_KEY, BTN_TOUCH, 1);
    mDown |= 1u << slot;
    return flush();
}

bool VirtualTouchDevice::sendDragged(int slot, QPoint point)
{
    return beginFrame(slot, point) && flush();
}

bool VirtualTouchDevice::sendReleased(int slot, QPoint point)
{
    if (!beginFrame(slot, point))
        return false;
    add(EV_ABS, ABS_MT_TRACKING_ID, -1);
    mDown &= ~(1u << slot);
    if (mDown == 0)
        add(EV_KEY, BTN_TOUCH, 0);
    return flush();
}

bool VirtualTouchDevice::beginFrame(int slot, QPoint point)
{
    if (!ORBIS_ASSERT(slot >= 0 && slot < kMaxSlots, QStringLiteral("invalid touch %1").arg(slot)))
        return false;
    add(EV_ABS, ABS_MT_SLOT, slot);
    add(EV_ABS, ABS_MT_POSITION_X, point.x());
    add(EV_ABS, ABS_MT_POSITION_Y, point.y());
    return true;
}

void VirtualTouchDevice::add(int type, int code, int value)
{
    input_event event;
    memset(&event, 0, sizeof(event));
    event.type = quint16(type);
    event.code = quint16(code);
    event.value = value;
    mFrame.append(event);
}

bool VirtualTouchDevice::flush()
{
    add(EV_SYN, SYN_REPORT, 0);
    const ssize_t bytes = ssize_t(mFrame.size() * sizeof(input_event));
    const bool written = ::write(mFd, mFrame.constData(), size_t(bytes)) == bytes;
    mFrame.clear();
    if (!written)
        ORBIS_ERROR(QStringLiteral("Cannot write virtual touch event: %1")
                        .arg(QString::fromLocal8Bit(strerror(errno))));
    return written;
}
