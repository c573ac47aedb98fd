#include <ConfigRegistry.h>
#include <DisplayDevice.h>
#include <ElapsedTimer.h>
#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>
#include <QThreadPool>
#include <cmath>
#include <maps/MapView.h>
#include <native/MapCRS.h>
#include <native/tiles/GeneratedTileSource.h>
#include <native/tiles/HttpTileSource.h>
#include <native/tiles/TileCache.h>

using namespace NativeMaps;

namespace {

// A drive through the street grid: every corner is a street crossing (streets run
// every 256 world pixels at zoom 18 in the generated map).
QVector<LocationCoordinate> route(const LocationCoordinate& start)
{
    const MapCRS* crs = MapCRS::defaultCRS();
    const QPointF origin = crs->worldPixelsFromLatLng(start, 18);
    const QPointF corner(std::round(origin.x() / 256) * 256, std::round(origin.y() / 256) * 256);
    const QVector<QPoint> blocks = {{0, 0}, {0, -3}, {4, -3}, {4, -7}, {9, -7}, {9, -12}, {14, -12}};
    QVector<LocationCoordinate> points;
    for (const QPoint& b : blocks)
        points << crs->latLngFromWorldPixels(corner + QPointF(b.x() * 256.0, b.y() * 256.0), 18);
    return points;
}

// Where the car is after `metres` along the route, and which way it faces.
LocationCoordinate along(const QVector<LocationCoordinate>& points, double metres, double* heading)
{
    const MapCRS* crs = MapCRS::defaultCRS();
    for (int i = 1; i < points.size(); ++i) {
        const double leg = crs->distance(points[i - 1], points[i]);
        const QPointF a = crs->worldPixelsFromLatLng(points[i - 1], 18),
                      b = crs->worldPixelsFromLatLng(points[i], 18);
        *heading = std::fmod(std::atan2(b.x() - a.x(), a.y() - b.y()) * 180.0 / M_PI + 360.0, 360.0);
        if (metres <= leg || i == points.size() - 1) {
            const double f = qBound(0.0, metres / leg, 1.0);
            return crs->latLngFromWorldPixels(a + (b - a) * f, 18);
        }
        metres -= leg;
    }
    return points.last();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"size", "Screen size.", "WxH", "1280x800"});
    parser.addOption({"frames", "Frames to run (0: until closed).", "N", "240"});
    parser.addOption({"screenshot", "Screenshot of the last frame.", "PATH"});
    parser.addOption({"zoom", "Zoom level.", "Z", "16.5"});
    parser.addOption({"tilt", "Tilt in degrees.", "DEG", "45"});
    parser.addOption({"speed", "Car speed in metres per second.", "MPS", "14"});
    parser.addOption({"pattern", "Test-pattern tiles instead of the map."});
    parser.addOption({"http", "Tiles from the server of maps/tile_url, cached."});
    parser.addOption({"set", "Configuration override.", "KEY=VALUE"});
    parser.addOption(
        {"tile", "Writes one generated tile (Z/X/Y) to the screenshot path and exits.", "Z/X/Y"});
    parser.process(app);
    // Tiles share the texture budget with the rest of the screen: a full-screen
    // tilted map keeps some 150 of them (256 KB each) on the GPU.
    ConfigRegistry::instance().applyOverride(QStringLiteral("gfx/texture_cache_size_mb=96"));
    if (parser.isSet("tile")) {
        const QStringList zxy = parser.value("tile").split('/');
        const TileId tile(zxy.value(0).toInt(), zxy.value(1).toInt(), zxy.value(2).toInt());
        return GeneratedTilePainter(parser.isSet("pattern") ? GeneratedTilePainter::TestPattern
                                                            : GeneratedTilePainter::Map)
                       .paint(tile)
                       .save(parser.value("screenshot"))
                   ? 0
                   : 1;
    }
    for (const QString& o : parser.values("set"))
        ConfigRegistry::instance().applyOverride(o);
    const QStringList size = parser.value("size").split('x');
    DisplayDevice device(size.value(0).toInt(), size.value(1).toInt());
    if (!device.hasWindow()) {
        QTextStream(stderr) << "orbis-mapview needs an X display with OpenGL (try xvfb-run)\n";
        return 1;
    }
    auto* map = new MapView(device.views(), "map");
    map->resizeTo(device.width(), device.height());
    if (parser.isSet("http"))
        map->setTileSource(new HttpTileSource, new TileCache);
    else
        map->setTileSource(new GeneratedTileSource(parser.isSet("pattern") ? GeneratedTilePainter::TestPattern
                                                                           : GeneratedTilePainter::Map));
    const LocationCoordinate start(37.7749, -122.4194);
    const QVector<LocationCoordinate> drive = route(start);
    map->setRoute(drive);
    map->setFocus(QPointF(0.5, 0.7));
    map->setCamera(
        MapCamera(drive.first(), parser.value("zoom").toDouble(), 0.0, parser.value("tilt").toDouble()));
    map->setFollowCar(true);

    // A fix every second, as a receiver gives them.
    const double speed = parser.value("speed").toDouble();
    double heading = 0;
    map->addGpsFix(drive.first().latitude(), drive.first().longitude(), 0);
    ElapsedTimer clock;
    clock.start();
    int fixes = 0;
    int frames = 0;
    const int last = parser.value("frames").toInt();
    const QString screenshot = parser.value("screenshot");
    QObject::connect(device.timer(), &QTimer::timeout, &app, [&] {
        ++frames;
        const int second = int(clock.elapsed() / 1000);
        while (fixes < second) {
            ++fixes;
            const LocationCoordinate at = along(drive, fixes * speed, &heading);
            map->addGpsFix(at.latitude(), at.longitude(), heading);
        }
        if (last > 0 && frames == last - 1 && !screenshot.isEmpty())
            device.screenshot(screenshot);
        if (last > 0 && frames >= last)
            app.quit();
    });
    device.setTitle(QStringLiteral("Orbis map"));
    device.setVisible(true);
    const int status = app.exec();
    QThreadPool::globalInstance()->waitForDone();
    return status;
}
