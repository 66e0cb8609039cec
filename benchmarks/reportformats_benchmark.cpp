// Each report of a large run against the writing of the bytes that it wrote and, where there is
// one, against what a common library takes for the same content.

#include "shared/zipfile.h"
#include "test/testreportgeneratorfactory.h"
#include "test/testresult.h"
#include "test/webreport/webreportrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamWriter>

#include <benchmark/benchmark.h>
#include <json/json.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <limits>
#include <malloc.h>
#include <unistd.h>
#include <vector>

using namespace Morvex;

namespace {

const int entriesPerTestCase = 100;
const int entryCount = 50000;

using Entries = std::vector<TestResult::Entry>;

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

void makeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Can't write %s", qUtf8Printable(path));
}

// A suite with one script, which is there, as in a run.
struct Run
{
    Run()
    {
        makeFile(script, "x");
        entries.push_back(entryOf(TestResult::START, 0));
        for (int i = 0; i < entryCount; ++i)
            entries.push_back(entryOf(typeOf(i % entriesPerTestCase), i));
        entries.push_back(entryOf(TestResult::END, entryCount));
    }

    TestResult::Entry entryOf(TestResult::ResultType type, int number) const
    {
        TestResult::Entry entry;
        entry.time = QDateTime::fromMSecsSinceEpoch(1700000000000 + number * 3);
        entry.type = type;
        entry.name = QStringLiteral("suite_large");
        entry.info = QStringLiteral("tst_%1").arg(number / entriesPerTestCase);
        entry.message = QStringLiteral("The price of item %1 is shown in the total").arg(number);
        entry.details = QStringLiteral("Expected '%1', got '%1'.").arg(number).repeated(4);
        entry.line = LineInfo(type == TestResult::START ? dir.path() : script, number % 500);
        entry.stack = {entry.line};
        entry.vpCounter = number;
        return entry;
    }

    QTemporaryDir dir;
    QString script = dir.filePath(QStringLiteral("tst_a/script.js"));
    Entries entries;
};

const Run &largeRun()
{
    static const Run run;
    return run;
}

// Of the processor, so that a ratio holds on a machine that others use.
double cpuSecondsOf(const std::function<void()> &action)
{
    const std::clock_t begin = std::clock();
    action();
    return double(std::clock() - begin) / CLOCKS_PER_SEC;
}

void writeReport(const QString &keyword, const QString &path)
{
    TestResult result(TestReportGeneratorFactory::create({keyword + QLatin1Char(',') + path},
                                                         TestReportGenerator::TEST_SUITE));
    for (const TestResult::Entry &entry : largeRun().entries)
        result.processEntry(entry);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

using Peer = void (*)(const QByteArray &report, const QString &path);

void bufferedWrites(const QByteArray &report, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Can't write %s", qUtf8Printable(path));
    const int piece = std::max(report.size() / entryCount, 1);
    for (int i = 0; i < report.size(); i += piece)
        file.write(report.constData() + i, std::min(piece, report.size() - i));
}

// Each line goes out by itself.
void lineWrites(const QByteArray &report, const QString &path)
{
    const int file =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    for (int begin = 0; begin < report.size();) {
        const int end = report.indexOf('\n', begin) + 1;
        benchmark::DoNotOptimize(
            ::write(file, report.constData() + begin, std::size_t(end - begin)));
        begin = end;
    }
    ::close(file);
}

void jsonCppWithFlushes(const QByteArray &, const QString &path)
{
    std::ofstream stream(path.toStdString());
    Json::FastWriter writer;
    for (const TestResult::Entry &entry : largeRun().entries) {
        Json::Value value;
        value["detail"] = entry.details.toStdString();
        value["lineNo"] = entry.line.lineNumber();
        value["result"] = TestResult::resultToString(entry.type).toStdString();
        value["text"] = (entry.message + QLatin1String(": ") + entry.details).toStdString();
        value["time"] = entry.time.toString(Qt::ISODate).toStdString();
        value["type"] = "scriptedVerificationResult";
        value["uri"] = "x-testsuite:/tst_a/script.js";
        stream << writer.write(value) << ',';
        stream.flush();
    }
}

void xmlStreamWriterWithFlushes(const QByteArray &, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Can't write %s", qUtf8Printable(path));
    QXmlStreamWriter writer(&file);
    writer.setAutoFormatting(true);
    const auto cdata = [&writer](const char *name, const QString &text) {
        writer.writeStartElement(QString::fromLatin1(name));
        writer.writeCDATA(text);
        writer.writeEndElement();
    };
    const auto location = [&](const char *name, const LineInfo &line) {
        writer.writeStartElement(QString::fromLatin1(name));
        cdata("uri", QStringLiteral("x-testsuite:/tst_a/script.js"));
        cdata("lineNo", QString::number(line.lineNumber()));
        writer.writeEndElement();
    };
    for (const TestResult::Entry &entry : largeRun().entries) {
        writer.writeStartElement(QStringLiteral("verification"));
        location("location", entry.line);
        writer.writeStartElement(QStringLiteral("scriptedVerificationResult"));
        writer.writeAttribute(QStringLiteral("type"), TestResult::resultToString(entry.type));
        writer.writeAttribute(QStringLiteral("time"), entry.time.toString(Qt::ISODateWithMs));
        location("scriptedLocation", entry.line);
        cdata("text", entry.message + QLatin1String(": ") + entry.info);
        cdata("detail", entry.details);
        writer.writeEndElement();
        writer.writeEndElement();
        file.flush();
    }
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

QString fileOf(const QString &keyword, const QString &path)
{
    for (const auto &known : TestReportGeneratorFactory::keywords()) {
        if (keyword == known.name && known.target == TestReportGeneratorFactory::Directory)
            return path + QLatin1Char('/') + known.file;
    }
    return path;
}

// The shortest times, measured in turns: what else the machine does only makes them longer.
void reportFormat(benchmark::State &state, const char *name, Peer peer)
{
    const QTemporaryDir dir;
    const QString keyword = QString::fromLatin1(name);
    const QString path = dir.filePath(QStringLiteral("report"));
    state.counters["peak_bytes_per_entry"] = double(peakMemoryOf(keyword, path)) / entryCount;
    const QByteArray content = contentOf(fileOf(keyword, path));
    double seconds = std::numeric_limits<double>::max();
    double peerSeconds = seconds;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        peerSeconds =
            std::min(peerSeconds,
                     cpuSecondsOf([&] { peer(content, dir.filePath(QStringLiteral("peer"))); }));
        QDir(path).removeRecursively();
        QFile::remove(path);
        state.ResumeTiming();
        seconds = std::min(seconds, cpuSecondsOf([&] { writeReport(keyword, path); }));
    }
    state.counters["ratio"] = seconds / peerSeconds;
    state.counters["us_per_entry"] = seconds * 1e6 / entryCount;
    state.counters["bytes_per_entry"] = double(content.size()) / entryCount;
}

void repairOfAWebReport(benchmark::State &state)
{
    const QTemporaryDir dir;
    writeReport(QStringLiteral("json1.2"), dir.path());
    const QByteArray data = "var data = [];\ndata.push( " +
                            contentOf(dir.filePath(QStringLiteral("results.json"))) + " );\n\n";
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(webReportEdits(data.constData(), data.size()));
    state.SetBytesProcessed(state.iterations() * data.size());
}

void makeTree(const QString &path)
{
    for (int number = 0; number < 300; ++number) {
        QByteArray content;
        for (int line = 0; line < 2000; ++line)
            content += QByteArray::number(line * 7919LL * number) + " of the report\n";
        makeFile(QStringLiteral("%1/dir%2/file%3").arg(path).arg(number % 7).arg(number), content);
    }
}

// By the clock: the program works in a process of its own.
void zipAgainstZipProgram(benchmark::State &state)
{
    const QTemporaryDir dir;
    const QString tree = dir.filePath(QStringLiteral("tree"));
    makeTree(tree);
    double zipSeconds = 0;
    double programSeconds = 0;
    const auto now = [] {
        return double(std::chrono::steady_clock::now().time_since_epoch().count()) / 1e9;
    };
    for ([[maybe_unused]] auto _ : state) {
        const double start = now();
        {
            QFile target(dir.filePath(QStringLiteral("own.zip")));
            ZipFile zip(&target);
            benchmark::DoNotOptimize(zip.addDirectoryContents(QDir(tree)));
        }
        const double middle = now();
        zipSeconds += middle - start;
        QFile::remove(dir.filePath(QStringLiteral("program.zip")));
        QProcess zip;
        zip.setWorkingDirectory(tree);
        zip.start(QStringLiteral("zip"),
                  {QStringLiteral("-qr"), QStringLiteral("../program.zip"), QStringLiteral(".")});
        if (!zip.waitForFinished() || zip.exitCode() != 0)
            state.SkipWithError("The zip program is missing");
        programSeconds += now() - middle;
    }
    state.counters["ratio"] = zipSeconds / programSeconds;
}

} // namespace

BENCHMARK_CAPTURE(reportFormat, xml3_to_lines, "xml3.5", lineWrites)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xml3_to_xml_stream_writer, "xml3.5", xmlStreamWriterWithFlushes)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, json_to_jsoncpp, "json1.2", jsonCppWithFlushes)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, json, "json1.2", bufferedWrites)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xml, "xml", bufferedWrites)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xmlIncremental, "xmlIncremental", bufferedWrites)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xml2_2, "xml2.2", bufferedWrites)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, junit, "junit", bufferedWrites)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xmljunit, "xmljunit", bufferedWrites)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportFormat, xls, "xls", bufferedWrites)->Unit(benchmark::kMillisecond);
BENCHMARK(repairOfAWebReport)->Unit(benchmark::kMillisecond);
BENCHMARK(zipAgainstZipProgram)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
