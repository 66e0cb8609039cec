// The console report, from addResult on, against fprintf and fflush of the same lines.

#include "passingchecks.h"
#include "ratio.h"
#include "test/stdoutreportgenerator.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include <vector>

using namespace Morvex;

namespace {

const int entries = 50000;

void report(const QString &path)
{
    QFile::remove(path);
    logPassingChecks(StdoutReportGenerator::create(path).generator, entries);
}

std::vector<std::string> linesOf(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    std::vector<std::string> lines;
    while (!file.atEnd())
        lines.push_back(file.readLine().toStdString());
    return lines;
}

void print(const std::vector<std::string> &lines, const QString &path)
{
    QFile::remove(path);
    std::FILE *file = std::fopen(qPrintable(path), "w");
    for (const std::string &line : lines) {
        std::fprintf(file, "%s", line.c_str());
        std::fflush(file);
    }
    std::fclose(file);
}

void consoleReport(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString reportPath = dir.filePath("report");
    const QString printPath = dir.filePath("print");
    report(reportPath);
    const std::vector<std::string> lines = linesOf(reportPath);
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state)
        state.SetIterationTime(
            ratio.measure([&reportPath] { report(reportPath); }, [&] { print(lines, printPath); }));
    state.counters["ratio_to_fprintf"] = ratio.value();
}
BENCHMARK(consoleReport)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
