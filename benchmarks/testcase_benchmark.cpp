// The whole cost of an empty test case, from the start of its child to its END in the parent,
// against starting an empty Qt Core program.

#include "ratio.h"
#include "test/nullreportgenerator.h"
#include "test/testcaseprocess.h"
#include "test/testresult.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cstdlib>

using namespace Morvex;

namespace {

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
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [] {
                TestResult result(new NullReportGenerator);
                if (TestCaseProcess::run({"--testcase", "tst_a"}, 0, 0, &result) != 0 ||
                    !result.isTestCaseComplete())
                    std::abort();
            },
            [] { QProcess::execute(MORVEX_EMPTY_QT_PROGRAM, {}); }));
    }
    state.counters["ratio_to_empty_program"] = ratio.value();
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
