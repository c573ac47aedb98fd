#include <QApplication>
#include <benchmark/benchmark.h>

// Benchmarks run inside a QApplication, like the framework itself.
int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    ::benchmark::Initialize(&argc, argv);
    if (::benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    return 0;
}
