#pragma once

#include "OrbisUIFrameworkExport.h"
#include "TouchDriver.h"

#include <QByteArray>
#include <QString>
#include <array>
#include <atomic>
#include <thread>

struct input_event;

/// Reads a multi-touch controller speaking the evdev slot protocol (type B) on its own
/// thread: slots select a contact, a tracking id of -1 lifts it, and SYN_REPORT closes
/// a frame, at which point every changed slot is queued as one event. The slot number is
/// the touch identifier. Works on any readable descriptor, so recorded streams can be
/// replayed through a pipe.
class ORBIS_UI_EXPORT EvdevTouchDriver : public TouchDriver
{
public:
    static constexpr int kMaxSlots = 10;

    EvdevTouchDriver();
    ~EvdevTouchDriver() override;
    EvdevTouchDriver(const EvdevTouchDriver&) = delete;
    EvdevTouchDriver& operator=(const EvdevTouchDriver&) = delete;

    /// Opens a device node and starts reading. A device that is missing or unreadable
    /// is logged, sets GUI_touchDriverError and returns false.
    bool open(const QString& path);
    /// Starts reading fd; with takeOwnership the descriptor is closed by stop().
    void start(int fd, bool takeOwnership);
    void stop();
    bool isRunning() const { return mRunning.load(); }

    /// Controller coordinate ranges; with both set and a screen size, positions are
    /// scaled to the screen. Read from the device by open(); set before start().
    void setRange(int minX, int maxX, int minY, int maxY);

    /// Parses raw bytes as they come from the descriptor (whole or split events).
    void feed(const char* data, int size);

private:
    struct Slot
    {
        bool down = false;
        bool reported = false;
        bool changed = false;
        /// The tracking id changed while down: a new finger took over the slot.
        bool replaced = false;
        int trackingId = -1;
        int x = 0;
        int y = 0;
    };

    void run();
    void handle(const input_event& event);
    void report();
    QPoint toScreen(int x, int y) const;
    void fail(const QString& message);

    std::array<Slot, kMaxSlots> mSlots;
    int mSlot = 0;
    bool mDropping = false;
    QByteArray mPending;
    int mMinX = 0, mMaxX = 0, mMinY = 0, mMaxY = 0;

    int mFd = -1;
    bool mOwnsFd = false;
    int mWake[2] = {-1, -1};
    std::thread mThread;
    std::atomic<bool> mRunning{false};
};
