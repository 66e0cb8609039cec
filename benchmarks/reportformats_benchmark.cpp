// Each report of a large run, against a buffered write of the bytes that it wrote.

#include "test/testreportgeneratorfactory.h"
#include "test/testresult.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <malloc.h>
#include <vector>

using namespace Morvex;

namespace {

const int entriesPerTestCase = 100;
const int entryCount = 50000;

using Entries = std::vector<TestResult::Entry>;

TestResult::Entry entryOf(TestResult::ResultType type, int number)
{
    TestResult::Entry entry;
    entry.time = QDateTime::fromMSecsSinceEpoch(1700000000000 + number * 20);
    entry.type = type;
    entry.name = QStringLiteral("suite_large");
    entry.info = QStringLiteral("tst_%1").arg(number / entriesPerTestCase);
    entry.message = QStringLiteral("The price of item %1 is shown in the total").arg(number);
    entry.details = QStringLiteral("Expected '%1', got '%1'.").arg(number).repeated(4);
    entry.line = LineInfo(QStringLiteral("/suite_large/tst_a/script.js"), number % 500);
    entry.stack = {entry.line};
    return entry;
}

TestResult::ResultType typeOf(int placeInTestCase)
{
    switch (placeInTestCase) {
    case 0:
        return TestResult::START_TEST_CASE;
    case entriesPerTestCase - 1:
        return TestResult::END_TEST_CASE;
    default:
        break;
    }
    if (placeInTestCase % 20 == 0)
        return TestResult::FAIL;
    return placeInTestCase % 3 == 0 ? TestResult::LOG : TestResult::PASS;
}

const Entries &largeRun()
{
    static const Entries run = [] {
        Entries entries{entryOf(TestResult::START, 0)};
        for (int i = 0; i < entryCount; ++i)
            entries.push_back(entryOf(typeOf(i % entriesPerTestCase), i));
        entries.push_back(entryOf(TestResult::END, entryCount));
        return entries;
    }();
    return run;
}

qint64 textBytes()
{
    qint64 bytes = 0;
    for (const TestResult::Entry &entry : largeRun())
        bytes += entry.message.toUtf8().size() + entry.details.toUtf8().size();
    return bytes;
}

void writeReport(const QString &keyword, const QString &path)
{
    TestResult result(TestReportGeneratorFactory::create({keyword + QLatin1Char(',') + path},
                                                         TestReportGenerator::TEST_SUITE));
    for (const TestResult::Entry &entry : largeRun())
        result.processEntry(entry);
}

double secondsOfPlainWrite(const QByteArray &content, const QString &path)
{
    const auto start = std::chrono::steady_clock::now();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Can't write %s", qPrintable(path));
    const int piece = std::max(content.size() / entryCount, 1);
    for (int i = 0; i < content.size(); i += piece)
        file.write(content.constData() + i, std::min(piece, content.size() - i));
    file.close();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// In bytes.
qint64 statusValue(const QByteArray &name)
{
    for (const QByteArray &line : contentOf(QStringLiteral("/proc/self/status")).split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size() + 1).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

qint64 peakMemoryOf(const QString &keyword, const QString &path)
{
    largeRun();
    malloc_trim(0);
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
        return 0;
    reset.close();
    const qint64 before = statusValue("VmRSS");
    writeReport(keyword, path);
    return statusValue("VmHWM") - before;
}

void reportFormat(benchmark::State &state, const char *name)
{
    QTemporaryDir dir;
    const QString keyword = QString::fromLatin1(name);
    const QString path = dir.filePath(QStringLiteral("report"));
    const qint64 peak = peakMemoryOf(keyword, path);
    const QByteArray content = contentOf(path);
    double seconds = 0;
    double plainSeconds = 0;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        plainSeconds += secondsOfPlainWrite(content, path);
        QFile::remove(path);
        state.ResumeTiming();
        const auto start = std::chrono::steady_clock::now();
        writeReport(keyword, path);
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    state.counters["times_plain_write"] = seconds / plainSeconds;
    state.counters["us_per_entry"] =
        seconds * 1e6 / (entryCount * static_cast<double>(state.iterations()));
    state.counters["bytes_per_entry"] = content.size() / double(entryCount);
    state.counters["peak_bytes_per_entry"] = peak / double(entryCount);
    state.counters["peak_beside_texts"] = (peak - textBytes()) / double(entryCount);
}

} // namespace

BENCHMARK_CAPTURE(reportFormat, xml, "xml")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xmlIncremental, "xmlIncremental")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xml2_2, "xml2.2")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, junit, "junit")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xmljunit, "xmljunit")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xls, "xls")->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
