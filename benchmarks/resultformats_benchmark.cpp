#include "shared/zipfile.h"
#include "test/jsonreportgenerator.h"
#include "test/webreport/webreportrepair.h"
#include "test/xml3reportgenerator.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <unistd.h>

using namespace Morvex;

namespace {

using Clock = std::chrono::steady_clock;
using Entries = std::vector<TestResult::Entry>;

const int entryCount = 200000;

void makeFile(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Can't write %s", qUtf8Printable(path));
}

TestResult::Entry entryAt(const QDateTime &time, TestResult::ResultType type)
{
    TestResult::Entry entry;
    entry.time = time;
    entry.type = type;
    entry.vpCounter = 0;
    entry.name = QStringLiteral("suite");
    return entry;
}

Entries makeEntries(const QString &suite)
{
    const QString script = suite + QLatin1String("/tst_a/script.js");
    makeFile(script);
    QDateTime time = QDateTime::fromMSecsSinceEpoch(1700000000000);
    Entries entries{entryAt(time, TestResult::START)};
    entries.back().line = LineInfo(suite, -1);
    for (int i = 0; i < entryCount; ++i) {
        time = time.addMSecs(3);
        TestResult::Entry entry = entryAt(time, i % 2 ? TestResult::PASS : TestResult::LOG);
        entry.message = QStringLiteral("Check %1 of the order form").arg(i);
        entry.details = QStringLiteral("Got expected 'value %1'.").arg(i);
        entry.line = LineInfo(script, i % 300);
        entry.stack = {entry.line};
        entry.vpCounter = i % 2 ? i : 0;
        entries.push_back(entry);
    }
    entries.push_back(entryAt(time, TestResult::END));
    return entries;
}

TestReportGenerator *createXml3(const QString &path)
{
    QString resultDir;
    return Xml3ReportGenerator::create(path, TestReportGenerator::TEST_SUITE, 5, &resultDir)
        .generator;
}

TestReportGenerator *createJson(const QString &path)
{
    QString resultDir;
    return JsonReportGenerator::create(path, TestReportGenerator::TEST_SUITE,
                                       JsonReportGenerator::Version1_2, &resultDir)
        .generator;
}

// Of the processor, so that the ratio holds on a machine that others use.
double cpuSecondsOf(const std::function<void()> &action)
{
    const std::clock_t begin = std::clock();
    action();
    return double(std::clock() - begin) / CLOCKS_PER_SEC;
}

double secondsOf(const std::function<void()> &action)
{
    const auto begin = Clock::now();
    action();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

void report(TestReportGenerator *created, const Entries &entries)
{
    const std::unique_ptr<TestReportGenerator> generator(created);
    for (const TestResult::Entry &entry : entries)
        generator->handleEntry(entry);
    generator->generateSummary();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBuffered(const QByteArray &bytes, const QString &path)
{
    std::FILE *file = std::fopen(QFile::encodeName(path).constData(), "w");
    const int piece = qMax(bytes.size() / entryCount, 1);
    for (int position = 0; position < bytes.size(); position += piece)
        std::fwrite(bytes.constData() + position, 1,
                    std::size_t(qMin(piece, bytes.size() - position)), file);
    std::fclose(file);
}

// Each line of the report goes out by itself, as the report does it.
void writeLines(const QByteArray &bytes, const QString &path)
{
    const int file =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    for (int begin = 0; begin < bytes.size();) {
        const int end = bytes.indexOf('\n', begin) + 1;
        benchmark::DoNotOptimize(
            ::write(file, bytes.constData() + begin, std::size_t(end - begin)));
        begin = end;
    }
    ::close(file);
}

// The ratio is to the time of the plain writing of the same bytes.
template <typename PlainWrite>
void compare(benchmark::State &state, TestReportGenerator *(*create)(const QString &),
             const char *fileName, PlainWrite plainWrite)
{
    const QTemporaryDir dir;
    const Entries entries = makeEntries(dir.filePath(QStringLiteral("suite")));
    double reportSeconds = 0;
    double plainSeconds = 0;
    for (auto _ : state) {
        reportSeconds +=
            cpuSecondsOf([&] { report(create(dir.filePath(QStringLiteral("report"))), entries); });
        state.PauseTiming();
        const QByteArray bytes = contentOf(dir.filePath(QLatin1String(fileName)));
        plainSeconds +=
            cpuSecondsOf([&] { plainWrite(bytes, dir.filePath(QStringLiteral("plain"))); });
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * entryCount);
    state.counters["ratio"] = reportSeconds / plainSeconds;
}

void xml3AgainstWrites(benchmark::State &state)
{
    compare(state, createXml3, "report/results.xml", writeLines);
}

void xml3AgainstBufferedWrite(benchmark::State &state)
{
    compare(state, createXml3, "report/results.xml", writeBuffered);
}

void jsonAgainstBufferedWrite(benchmark::State &state)
{
    compare(state, createJson, "report/results.json", writeBuffered);
}

void repairOfAWebReport(benchmark::State &state)
{
    const QTemporaryDir dir;
    report(createJson(dir.filePath(QStringLiteral("report"))),
           makeEntries(dir.filePath(QStringLiteral("suite"))));
    const QByteArray data = "var data = [];\ndata.push( " +
                            contentOf(dir.filePath(QStringLiteral("report/results.json"))) +
                            " );\n\n";
    for (auto _ : state)
        benchmark::DoNotOptimize(webReportEdits(data.constData(), data.size()));
    state.SetBytesProcessed(state.iterations() * data.size());
}

qint64 residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

// How much larger the process is at the end of a run of that many entries.
void memory(benchmark::State &state, TestReportGenerator *(*create)(const QString &))
{
    const QTemporaryDir dir;
    const Entries entries = makeEntries(dir.filePath(QStringLiteral("suite")));
    for (auto _ : state) {
        const std::unique_ptr<TestReportGenerator> generator(
            create(dir.filePath(QStringLiteral("report"))));
        generator->handleEntry(entries.front());
        const qint64 before = residentBytes();
        for (qint64 i = 0; i < state.range(0); ++i)
            generator->handleEntry(entries[std::size_t(1 + i % entryCount)]);
        state.counters["grownKiB"] = double(residentBytes() - before) / 1024;
    }
}

void memoryOfXml3(benchmark::State &state)
{
    memory(state, createXml3);
}

void memoryOfJson(benchmark::State &state)
{
    memory(state, createJson);
}

void makeTree(const QString &path)
{
    for (int number = 0; number < 300; ++number) {
        const QString name =
            QStringLiteral("%1/dir%2/file%3").arg(path).arg(number % 7).arg(number);
        makeFile(name);
        QFile file(name);
        file.open(QIODevice::WriteOnly);
        for (int line = 0; line < 2000; ++line)
            file.write(QByteArray::number(line * 7919LL * number) + " of the report\n");
    }
}

void zipAgainstZipProgram(benchmark::State &state)
{
    const QTemporaryDir dir;
    const QString tree = dir.filePath(QStringLiteral("tree"));
    makeTree(tree);
    double zipSeconds = 0;
    double programSeconds = 0;
    for (auto _ : state) {
        zipSeconds += secondsOf([&] {
            QFile target(dir.filePath(QStringLiteral("own.zip")));
            ZipFile zip(&target);
            benchmark::DoNotOptimize(zip.addDirectoryContents(QDir(tree)));
        });
        state.PauseTiming();
        QFile::remove(dir.filePath(QStringLiteral("program.zip")));
        programSeconds += secondsOf([&] {
            QProcess zip;
            zip.setWorkingDirectory(tree);
            zip.start(
                QStringLiteral("zip"),
                {QStringLiteral("-qr"), QStringLiteral("../program.zip"), QStringLiteral(".")});
            if (!zip.waitForFinished() || zip.exitCode() != 0)
                state.SkipWithError("The zip program is missing");
        });
        state.ResumeTiming();
    }
    state.counters["ratio"] = zipSeconds / programSeconds;
}

} // namespace

BENCHMARK(memoryOfXml3)->Arg(10000)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(memoryOfJson)->Arg(10000)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(zipAgainstZipProgram)->Unit(benchmark::kMillisecond);
BENCHMARK(xml3AgainstWrites)->Unit(benchmark::kMillisecond);
BENCHMARK(xml3AgainstBufferedWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(jsonAgainstBufferedWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(repairOfAWebReport)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
