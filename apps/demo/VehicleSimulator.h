#pragma once

#include <LocationCoordinate.h>
#include <QString>
#include <QVector>
#include <atomic>
#include <mutex>
#include <thread>

// A car driving laps of a route through the generated street grid, with a media
// player on board. It publishes the VehicleData values: drive values at 10 Hz, a
// position fix every whole second, media progress. It reads what the display writes
// (play/pause, skip). The simulation advances only through advanceTo(), with
// milliseconds since it started; start() runs a thread that follows the framework
// clock, so a run on a stepped clock stays in step with the frames.
class VehicleSimulator
{
public:
    struct Track
    {
        QString title;
        QString artist;
        QString cover;
        int seconds;
    };
    struct State
    {
        qint64 timeMs = 0;
        double metres = 0; // along the route, over all laps
        double speedKmh = 0;
        double powerKw = 0;
        double batteryPercent = 0;
        LocationCoordinate position;
        double heading = 0;
        int track = 0;
        double mediaSeconds = 0;
        bool playing = true;
    };

    static constexpr int kStepMs = 100;

    VehicleSimulator();
    ~VehicleSimulator();
    VehicleSimulator(const VehicleSimulator&) = delete;
    VehicleSimulator& operator=(const VehicleSimulator&) = delete;

    using Route = QVector<LocationCoordinate>;
    // The closed loop the car drives, first point repeated at the end.
    static Route drivenRoute();
    const Route& route() const { return mRoute; }
    static const QVector<Track>& tracks();

    // Runs the simulation up to `ms` after its start and publishes what changed.
    // Going back in time does nothing.
    void advanceTo(qint64 ms);
    State state() const;

    // Where the car is after `metres` along the route (laps wrap), and its heading
    // in degrees clockwise from north.
    LocationCoordinate along(double metres, double* heading) const;
    double lapMetres() const { return mLapMetres; }

    // A thread that advances the simulation as the framework clock moves.
    void start();
    void stop();
    bool isRunning() const { return mThread.joinable(); }

private:
    void step(int ms);
    void publish(bool fix);
    // Metres to the next corner ahead of `metres`.
    double toNextCorner(double metres) const;

    QVector<LocationCoordinate> mRoute;
    QVector<double> mLegStart; // metres from the start of the lap to each point
    double mLapMetres = 0;

    mutable std::mutex mMutex;
    State mState;
    int mSkipSeen = 0;
    qint64 mStartMs = 0;
    std::atomic<bool> mStop{false};
    std::thread mThread;
};
