#include "native/MapCRS.h"
#include "native/MapTransform.h"

#include <QRegion>
#include <benchmark/benchmark.h>

// Tile enumeration for a 1920x1200 view at zoom 15 over Seoul. The baseline is the
// flat, north-up view enumerated in scan order; the others rotate by 30 degrees,
// tilt by the first argument, hide tiles under three overlay rects when the
// second is 1, and sort centre-out when the third is 1.

using namespace NativeMaps;

namespace {

const QRect kViewport(0, 0, 1920, 1200);

MapTransform benchCamera(double rotation, double tilt)
{
    return MapTransform(15, 1.0, rotation, MapProjection::forViewport(kViewport),
                        LocationCoordinate(37.5665, 126.978), QPointF(960, 600), QSize(256, 256))
        .changeTilt(tilt);
}

QRegion overlays()
{
    // Status bar, a card on the right and the bottom bar, in separate bands.
    QRegion r;
    r += QRect(0, 0, 1920, 100);
    r += QRect(1300, 200, 600, 700);
    r += QRect(0, 1000, 1920, 200);
    return r;
}

void runTilePoints(benchmark::State& state, const MapTransform& camera, const QRegion& covered,
                   bool centreOut)
{
    const QPointF center = centreOut ? QPointF(960, 600) : QPointF(0, 0);
    QRectF viewRect;
    int count = 0;
    for (auto _ : state) {
        const QVector<QPoint> tiles = camera.tilePoints(1000, center, covered, viewRect);
        count = tiles.size();
        benchmark::DoNotOptimize(tiles.constData());
    }
    state.counters["tiles"] = count;
}

} // namespace

static void BM_TilePointsBaseline(benchmark::State& state)
{
    MapCRSEPSG3857 crs;
    MapCRS* const previous = MapCRS::defaultCRS();
    MapCRS::setDefaultCRS(&crs);
    runTilePoints(state, benchCamera(0, 0), QRegion(), false);
    MapCRS::setDefaultCRS(previous);
}
BENCHMARK(BM_TilePointsBaseline)->Unit(benchmark::kMicrosecond);

static void BM_TilePoints(benchmark::State& state)
{
    MapCRSEPSG3857 crs;
    MapCRS* const previous = MapCRS::defaultCRS();
    MapCRS::setDefaultCRS(&crs);
    runTilePoints(state, benchCamera(30, double(state.range(0))), state.range(1) ? overlays() : QRegion(),
                  state.range(2) != 0);
    MapCRS::setDefaultCRS(previous);
}
BENCHMARK(BM_TilePoints)
    ->ArgNames({"tilt", "covered", "centreOut"})
    ->ArgsProduct({{0, 30, 55}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);
