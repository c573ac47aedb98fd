#include "physics/Friction.h"
#include "physics/Spring.h"

#include <benchmark/benchmark.h>

// One 60 Hz frame of the overscroll bounce: the closed-form spring evaluated at
// the frame time against the baseline of stepping the same spring through the
// frame at 1 ms (what a stepped simulation needs to stay stable at k 90, b 20).
static void BM_SpringFrameClosedForm(benchmark::State& state)
{
    Spring spring(1.0f, 90.0f, 20.0f, Spring::AnimateToEnd);
    spring.snapEnd(0, 80);
    spring.setEnd(0, 0, 0);
    long long ms = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(spring.x(ms));
        benchmark::DoNotOptimize(spring.dx(ms));
        ms = (ms + 16) % 1000;
    }
}
BENCHMARK(BM_SpringFrameClosedForm);

static void BM_SpringFrameStepped(benchmark::State& state)
{
    float x = 80, v = 0;
    for (auto _ : state) {
        for (int i = 0; i < 16; ++i) {
            v += (-20.0f * v - 90.0f * x) * 0.001f;
            x += v * 0.001f;
        }
        benchmark::DoNotOptimize(x);
        if (x < 0.01f)
            x = 80, v = 0;
    }
}
BENCHMARK(BM_SpringFrameStepped);

// One frame of a friction glide inside the range, the common case of a fling.
static void BM_ScrollFrameFriction(benchmark::State& state)
{
    Scroll scroll(0.01f, 90.0f, 20.0f, 1e9f);
    scroll.reset(0, -5e8f, 3000.0f, 1e9f);
    long long ms = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(scroll.x(ms, 2.0));
        ms = (ms + 16) % 2000;
    }
}
BENCHMARK(BM_ScrollFrameFriction);
