#include "VehicleSimulator.h"

#include "VehicleData.h"

#include <Clock.h>
#include <QVariantList>
#include <chrono>
#include <cmath>
#include <native/MapCRS.h>

namespace {
constexpr double kZoom = 18;         // the street grid: a street every 256 world pixels
constexpr double kCruise = 50 / 3.6; // m/s
constexpr double kCorner = 18 / 3.6; // m/s through a turn
constexpr double kAccelerate = 1.6;  // m/s²
constexpr double kBrake = 2.2;       // m/s²
constexpr double kMassKg = 2100;
constexpr double kPackKwh = 75;
constexpr double kStartPercent = 78.6;
constexpr double kKmPerPercent = 4.6;
constexpr int kStartOfDay = 8 * 3600 + 42 * 60; // the drive starts at 08:42
// Corners of the lap, in blocks of the street grid from the start.
const QPoint kBlocks[] = {{0, 0}, {0, -3}, {4, -3}, {4, -6}, {8, -6}, {8, 0}, {0, 0}};
const LocationCoordinate kStart(37.7749, -122.4194);

const NativeMaps::MapCRS& crs()
{
    static const NativeMaps::MapCRSEPSG3857 webMercator;
    return webMercator;
}
} // namespace

const QVector<VehicleSimulator::Track>& VehicleSimulator::tracks()
{
    static const QVector<Track> list = {
        {QStringLiteral("Midnight Coastline"), QStringLiteral("The Long Weekends"),
         QStringLiteral("covers/coastline"), 224},
        {QStringLiteral("Glass Towers and the Endless Summer Boulevard"), QStringLiteral("Aurora Fields"),
         QStringLiteral("covers/towers"), 251},
        {QStringLiteral("Slow Lane"), QStringLiteral("Mara Lindqvist"), QStringLiteral("covers/slowlane"),
         187},
        {QStringLiteral("Northern Lights"), QStringLiteral("Kite Harbour"), QStringLiteral("covers/northern"),
         266},
    };
    return list;
}

VehicleSimulator::Route VehicleSimulator::drivenRoute()
{
    const QPointF origin = crs().worldPixelsFromLatLng(kStart, kZoom);
    const QPointF corner(std::round(origin.x() / 256) * 256, std::round(origin.y() / 256) * 256);
    Route route;
    for (const QPoint& b : kBlocks)
        route << crs().latLngFromWorldPixels(corner + QPointF(b.x() * 256.0, b.y() * 256.0), kZoom);
    return route;
}

VehicleSimulator::VehicleSimulator()
{
    mRoute = drivenRoute();
    mLegStart << 0;
    for (int i = 1; i < mRoute.size(); ++i)
        mLegStart << mLegStart.last() + crs().distance(mRoute[i - 1], mRoute[i]);
    mLapMetres = mLegStart.last();

    mState.batteryPercent = kStartPercent;
    mState.position = along(0, &mState.heading);
    {
        DataValue::ConditionalLocker lock(VehicleData::mediaSkipRequest);
        mSkipSeen = VehicleData::mediaSkipRequest.toInt();
    }
}

VehicleSimulator::~VehicleSimulator()
{
    stop();
}

LocationCoordinate VehicleSimulator::along(double metres, double* heading) const
{
    double m = std::fmod(metres, mLapMetres);
    if (m < 0)
        m += mLapMetres;
    int leg = 1;
    while (leg < mRoute.size() - 1 && m > mLegStart[leg])
        ++leg;
    const QPointF a = crs().worldPixelsFromLatLng(mRoute[leg - 1], kZoom);
    const QPointF b = crs().worldPixelsFromLatLng(mRoute[leg], kZoom);
    if (heading)
        *heading = std::fmod(std::atan2(b.x() - a.x(), a.y() - b.y()) * 180.0 / M_PI + 360.0, 360.0);
    const double length = mLegStart[leg] - mLegStart[leg - 1];
    const double f = length > 0 ? qBound(0.0, (m - mLegStart[leg - 1]) / length, 1.0) : 0.0;
    return crs().latLngFromWorldPixels(a + (b - a) * f, kZoom);
}

double VehicleSimulator::toNextCorner(double metres) const
{
    const double m = std::fmod(metres, mLapMetres);
    for (int i = 1; i < mLegStart.size(); ++i) {
        if (mLegStart[i] > m)
            return mLegStart[i] - m;
    }
    return 0;
}

VehicleSimulator::State VehicleSimulator::state() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mState;
}

void VehicleSimulator::advanceTo(qint64 ms)
{
    std::lock_guard<std::mutex> lock(mMutex);
    while (mState.timeMs + kStepMs <= ms) {
        const qint64 before = mState.timeMs;
        step(kStepMs);
        publish(before / 1000 != mState.timeMs / 1000);
    }
}

void VehicleSimulator::step(int ms)
{
    const double dt = ms / 1000.0;
    State& s = mState;
    s.timeMs += ms;

    // Drive: cruise, braking in time to take each corner slowly.
    const double v = s.speedKmh / 3.6;
    const double limit = std::sqrt(kCorner * kCorner + 2 * kBrake * toNextCorner(s.metres));
    const double target = qMin(kCruise, limit);
    const double a = target > v ? qMin(kAccelerate, (target - v) / dt) : qMax(-kBrake, (target - v) / dt);
    const double next = qMax(0.0, v + a * dt);
    s.metres += (v + next) / 2 * dt;
    s.speedKmh = next * 3.6;
    // Inertia, air and rolling resistance, and the cabin's own draw.
    const double watts = kMassKg * a * next + 0.5 * 1.2 * 0.62 * next * next * next + 160 * next + 900;
    s.powerKw = watts / 1000;
    s.batteryPercent -= s.powerKw * dt / 3600 / kPackKwh * 100;
    s.position = along(s.metres, &s.heading);

    // Media.
    int skip;
    {
        DataValue::ConditionalLocker lock(VehicleData::mediaSkipRequest);
        skip = VehicleData::mediaSkipRequest.toInt();
    }
    {
        DataValue::ConditionalLocker lock(VehicleData::mediaPlaying);
        s.playing = VehicleData::mediaPlaying.toBool();
    }
    const int count = tracks().size();
    if (skip != mSkipSeen) {
        s.track = ((s.track + skip - mSkipSeen) % count + count) % count;
        s.mediaSeconds = 0;
        mSkipSeen = skip;
    } else if (s.playing) {
        s.mediaSeconds += dt;
        if (s.mediaSeconds >= tracks()[s.track].seconds) {
            s.track = (s.track + 1) % count;
            s.mediaSeconds = 0;
        }
    }
}

void VehicleSimulator::publish(bool fix)
{
    using namespace VehicleData;
    const State& s = mState;
    const auto set = [](DataValue& value, const QVariant& v) {
        DataValue::EventLocker lock(value);
        value.setValue(v);
    };
    set(speed, std::round(s.speedKmh));
    set(gear, QStringLiteral("D"));
    set(powerKw, std::round(s.powerKw * 10) / 10);
    {
        // Range follows from the charge: both change in one write.
        DataValue::EventLocker batteryLock(batteryPercent);
        DataValue::EventLocker rangeLock(rangeKm);
        batteryPercent.setValue(std::round(s.batteryPercent * 10) / 10);
        rangeKm.setValue(std::round(s.batteryPercent * kKmPerPercent));
    }
    const double seconds = s.timeMs / 1000.0;
    set(timeOfDay, (kStartOfDay + int(seconds)) % 86400);
    set(outsideTemperature, std::round((17.5 + 0.4 * std::sin(seconds / 90)) * 10) / 10);
    set(connectivity, std::fmod(seconds, 120) >= 45 && std::fmod(seconds, 120) < 75 ? 3 : 4);
    const Track& track = tracks()[s.track];
    {
        DataValue::EventLocker titleLock(mediaTitle);
        DataValue::EventLocker artistLock(mediaArtist);
        DataValue::EventLocker coverLock(mediaCover);
        DataValue::EventLocker durationLock(mediaDuration);
        mediaTitle.setValue(track.title);
        mediaArtist.setValue(track.artist);
        mediaCover.setValue(track.cover);
        mediaDuration.setValue(track.seconds);
    }
    const Track& next = tracks()[(s.track + 1) % tracks().size()];
    {
        DataValue::EventLocker titleLock(mediaNextTitle);
        DataValue::EventLocker artistLock(mediaNextArtist);
        DataValue::EventLocker coverLock(mediaNextCover);
        mediaNextTitle.setValue(next.title);
        mediaNextArtist.setValue(next.artist);
        mediaNextCover.setValue(next.cover);
    }
    set(mediaPosition, std::floor(s.mediaSeconds));
    if (fix)
        set(position, QVariantList{s.position.latitude(), s.position.longitude(), s.heading});
}

void VehicleSimulator::start()
{
    if (mThread.joinable())
        return;
    mStartMs = Clock::current()->nowMilliseconds();
    mStop = false;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        publish(true);
    }
    mThread = std::thread([this] {
        while (!mStop.load()) {
            advanceTo(Clock::current()->nowMilliseconds() - mStartMs);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
}

void VehicleSimulator::stop()
{
    mStop = true;
    if (mThread.joinable())
        mThread.join();
}
