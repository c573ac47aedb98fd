// Multi-touch controller streams. The first 21 bytes configure the driver: the
// controller's x and y ranges (four little-endian 32-bit integers), the screen
// size (two 16-bit) and how many bytes each read hands over (0: all at once); the
// rest is the stream of input_event records, fed as reads would deliver it.

#include "FuzzEnvironment.h"
#include "gui/input/touch/EvdevTouchDriver.h"

#include <QSet>
#include <QtEndian>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzEnvironment::instance();
    constexpr size_t kHeader = 21;
    if (size < kHeader)
        return 0;
    EvdevTouchDriver driver;
    driver.setRange(qFromLittleEndian<qint32>(data), qFromLittleEndian<qint32>(data + 4),
                    qFromLittleEndian<qint32>(data + 8), qFromLittleEndian<qint32>(data + 12));
    driver.setSize(QSize(qFromLittleEndian<quint16>(data + 16), qFromLittleEndian<quint16>(data + 18)));
    const size_t chunk = data[20] ? data[20] : size;

    QSet<int> down;
    for (size_t offset = kHeader; offset < size; offset += chunk) {
        driver.feed(reinterpret_cast<const char*>(data + offset), int(qMin(chunk, size - offset)));
        for (const TouchEvent& event : driver.getEvents()) {
            FuzzEnvironment::check(event.id >= 0 && event.id < EvdevTouchDriver::kMaxSlots,
                                   "touch id is a slot");
            switch (event.state) {
            case TouchTouched:
                FuzzEnvironment::check(!down.contains(event.id), "a press finds the finger up");
                down.insert(event.id);
                break;
            case TouchMoved:
                FuzzEnvironment::check(down.contains(event.id), "a move finds the finger down");
                break;
            case TouchReleased:
                FuzzEnvironment::check(down.remove(event.id), "a release finds the finger down");
                break;
            default:
                FuzzEnvironment::check(false, "drivers report presses, moves and releases only");
            }
        }
    }
    return 0;
}
