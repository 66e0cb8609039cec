// The whole cost of an empty test case, from the start of its child to its END in the parent,
// against starting an empty program that has a script engine: elapsed time and processor time.

#include "ratio.h"
#include "test/nullreportgenerator.h"
#include "test/testcaseprocess.h"
#include "test/testresult.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <limits>
#include <sys/resource.h>

using namespace Morvex;

namespace {

double processorMilliseconds(int who)
{
    struct rusage usage = {};
    ::getrusage(who, &usage);
    const auto milliseconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

// Runs a piece of work and keeps the least processor time that its children took.
template <typename Work>
void measureChildren(const Work &work, double &least)
{
    const double before = processorMilliseconds(RUSAGE_CHILDREN);
    work();
    least = std::min(least, processorMilliseconds(RUSAGE_CHILDREN) - before);
}

void emptyTestCase(benchmark::State &state)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("tst_a");
    QFile script(dir.filePath("tst_a/script.js"));
    script.open(QIODevice::WriteOnly);
    script.close();
    QDir::setCurrent(dir.path());
    qputenv("MORVEX_PREFIX", MORVEX_BENCHMARK_PREFIX);
    MorvexBenchmark::Ratio ratio;
    double testCase = std::numeric_limits<double>::max();
    double emptyProgram = testCase;
    const auto runTestCase = [] {
        TestResult result(new NullReportGenerator);
        if (TestCaseProcess::run({"--testcase", "tst_a"}, 0, 0, &result) != 0 ||
            !result.isTestCaseComplete())
            std::abort();
    };
    const auto runEmptyProgram = [] { QProcess::execute(MORVEX_EMPTY_SCRIPT_PROGRAM, {}); };
    for (auto _ : state) {
        state.SetIterationTime(
            ratio.measure([&] { measureChildren(runTestCase, testCase); },
                          [&] { measureChildren(runEmptyProgram, emptyProgram); }));
    }
    state.counters["ratio_to_empty_program"] = ratio.value();
    state.counters["cpu_ms"] = testCase;
    state.counters["cpu_ms_of_empty_program"] = emptyProgram;
    QDir::setCurrent("/");
}
BENCHMARK(emptyTestCase)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
