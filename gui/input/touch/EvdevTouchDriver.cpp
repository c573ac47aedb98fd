#include "EvdevTouchDriver.h"

#include "DataValues.h"
#include "Logger.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/input.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

EvdevTouchDriver::EvdevTouchDriver() = default;

EvdevTouchDriver::~EvdevTouchDriver()
{
    stop();
}

void EvdevTouchDriver::fail(const QString& message)
{
    Logger::error(message);
    DataValue::EventLocker lock(GUI_touchDriverError);
    GUI_touchDriverError.setValue(true);
}

bool EvdevTouchDriver::open(const QString& path)
{
    const int fd = ::open(path.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        fail(QStringLiteral("Cannot open touch device %1: %2")
                 .arg(path, QString::fromLocal8Bit(strerror(errno))));
        return false;
    }
    input_absinfo x{}, y{};
    if (ioctl(fd, EVIOCGABS(ABS_MT_POSITION_X), &x) == 0 && ioctl(fd, EVIOCGABS(ABS_MT_POSITION_Y), &y) == 0)
        setRange(x.minimum, x.maximum, y.minimum, y.maximum);
    start(fd, true);
    return true;
}

void EvdevTouchDriver::setRange(int minX, int maxX, int minY, int maxY)
{
    mMinX = minX;
    mMaxX = maxX;
    mMinY = minY;
    mMaxY = maxY;
}

void EvdevTouchDriver::start(int fd, bool takeOwnership)
{
    stop();
    if (pipe2(mWake, O_CLOEXEC) != 0) {
        fail(
            QStringLiteral("Cannot start the touch reader: %1").arg(QString::fromLocal8Bit(strerror(errno))));
        if (takeOwnership)
            ::close(fd);
        return;
    }
    mFd = fd;
    mOwnsFd = takeOwnership;
    mRunning = true;
    mThread = std::thread([this] { run(); });
}

void EvdevTouchDriver::stop()
{
    if (mThread.joinable()) {
        const char byte = 0;
        // The reader polls the wake pipe beside the device; a write ends the poll.
        if (::write(mWake[1], &byte, 1) < 0)
            Logger::warn(QStringLiteral("Cannot wake the touch reader"));
        mThread.join();
    }
    for (int& end : mWake) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
    if (mOwnsFd && mFd >= 0)
        ::close(mFd);
    mFd = -1;
    mOwnsFd = false;
    mRunning = false;
}

void EvdevTouchDriver::run()
{
    char buffer[64 * sizeof(input_event)];
    pollfd fds[2] = {{mFd, POLLIN, 0}, {mWake[0], POLLIN, 0}};
    for (;;) {
        if (poll(fds, 2, -1) < 0) {
            if (errno == EINTR)
                continue;
            fail(QStringLiteral("Touch device poll failed: %1").arg(QString::fromLocal8Bit(strerror(errno))));
            break;
        }
        if (fds[1].revents)
            break;
        const ssize_t n = ::read(mFd, buffer, sizeof(buffer));
        if (n > 0) {
            feed(buffer, int(n));
        } else if (n == 0) {
            // The writer went away (a replayed stream ended).
            break;
        } else if (errno != EINTR && errno != EAGAIN) {
            fail(QStringLiteral("Touch device read failed: %1").arg(QString::fromLocal8Bit(strerror(errno))));
            break;
        }
    }
    mRunning = false;
}

void EvdevTouchDriver::feed(const char* data, int size)
{
    mPending.append(data, size);
    const int eventSize = int(sizeof(input_event));
    int offset = 0;
    for (; offset + eventSize <= mPending.size(); offset += eventSize) {
        input_event event;
        memcpy(&event, mPending.constData() + offset, sizeof(event));
        handle(event);
    }
    mPending.remove(0, offset);
}

void EvdevTouchDriver::handle(const input_event& event)
{
    if (event.type == EV_SYN) {
        if (event.code == SYN_DROPPED) {
            // The kernel's buffer overflowed: the frame is incomplete, wait for the next one.
            mDropping = true;
        } else if (event.code == SYN_REPORT) {
            if (!mDropping)
                report();
            mDropping = false;
        }
        return;
    }
    if (event.type != EV_ABS || mDropping)
        return;
    if (event.code == ABS_MT_SLOT) {
        mSlot = event.value;
        return;
    }
    if (mSlot < 0 || mSlot >= kMaxSlots)
        return;
    Slot& slot = mSlots[mSlot];
    switch (event.code) {
    case ABS_MT_TRACKING_ID:
        if (event.value < 0) {
            slot.down = false;
        } else {
            if (slot.down && slot.trackingId != event.value)
                slot.replaced = true;
            slot.down = true;
        }
        slot.trackingId = event.value;
        slot.changed = true;
        break;
    case ABS_MT_POSITION_X:
        slot.x = event.value;
        slot.changed = true;
        break;
    case ABS_MT_POSITION_Y:
        slot.y = event.value;
        slot.changed = true;
        break;
    default:
        break;
    }
}

void EvdevTouchDriver::report()
{
    for (int id = 0; id < kMaxSlots; ++id) {
        Slot& slot = mSlots[id];
        if (!slot.changed)
            continue;
        const QPoint point = toScreen(slot.x, slot.y);
        if (slot.replaced && slot.reported)
            queueEvent(id, false, point.x(), point.y());
        if (slot.down || slot.reported)
            queueEvent(id, slot.down, point.x(), point.y());
        slot.reported = slot.down;
        slot.changed = false;
        slot.replaced = false;
    }
}

namespace {

// Controllers report a little beyond their calibrated range at the edges of the
// glass; such positions belong to the screen's edge. Clamping also keeps the
// arithmetic within 64 bits whatever range the device claims.
int scaled(int value, int min, int max, int extent)
{
    const qint64 offset = qint64(qBound(min, value, max)) - min;
    return int(offset * extent / (qint64(max) - min + 1));
}

} // namespace

QPoint EvdevTouchDriver::toScreen(int x, int y) const
{
    const QSize screen = size();
    if (mMaxX <= mMinX || mMaxY <= mMinY || screen.isEmpty())
        return QPoint(x, y);
    return QPoint(scaled(x, mMinX, mMaxX, screen.width()), scaled(y, mMinY, mMaxY, screen.height()));
}
