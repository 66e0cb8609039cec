// Parsing time of a suite.conf; linear when the time of a line stays the same.

#include "shared/confparser.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

static void parseConfiguration(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("suite.conf");
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    for (int line = 0; line < state.range(0); ++line)
        file.write("KEY_" + QByteArray::number(line) +
                   " = some words \"quoted\" $(KEY_0) /a/path\n");
    file.close();
    for (auto _ : state)
        benchmark::DoNotOptimize(Morvex::ConfParser(path, true).entries());
    state.counters["ns/line"] =
        benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)) * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(parseConfiguration)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
