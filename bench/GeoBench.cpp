#include "GeoUtils.h"

#include <benchmark/benchmark.h>

// UTM-K forward and inverse against the spherical Mercator projection, the cheap
// baseline that every map frame also pays.
static void BM_SphericalMercatorProject(benchmark::State& state)
{
    LocationCoordinate c(37.5665, 126.9780);
    for (auto _ : state) {
        benchmark::DoNotOptimize(GeoUtils::projectToSphericalMercator(c));
        c.setLongitude(c.longitude() + 1e-9);
    }
}
BENCHMARK(BM_SphericalMercatorProject);

static void BM_UTMKProject(benchmark::State& state)
{
    LocationCoordinate c(37.5665, 126.9780);
    for (auto _ : state) {
        benchmark::DoNotOptimize(GeoUtils::WGStoUTMK(c));
        c.setLongitude(c.longitude() + 1e-9);
    }
}
BENCHMARK(BM_UTMKProject);

static void BM_UTMKUnproject(benchmark::State& state)
{
    TPoint<double> p(953898.0, 1952041.0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(GeoUtils::UTMKtoWGS(p));
        p.x += 1e-6;
    }
}
BENCHMARK(BM_UTMKUnproject);
