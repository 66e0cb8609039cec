// Test data from a large sheet and from a large delimited file, each against the least that has to
// be done with the same bytes and against what a script of another language takes for it.

#include "ratio.h"
#include "shared/testdata.h"
#include "shared/tsvtestdataset.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>
#include <malloc.h>
#include <memory>
#include <minizip/unzip.h>
#include <minizip/zip.h>
#include <string_view>
#include <vector>

using namespace Morvex;
using MorvexBenchmark::Ratio;

namespace {

const int sheetRows = 100000;
const int sheetColumns = 10;
const int differentStrings = 20000;
const int delimitedMegabytes = 100;
const int rounds = 3;

const QString &directory()
{
    static const QTemporaryDir dir;
    static const QString path = dir.path();
    return path;
}

QByteArray sheetXml()
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<worksheet "
                     "xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
                     "<dimension ref=\"A1:J100000\"/><sheetData>";
    for (int row = 1; row <= sheetRows; ++row) {
        const QByteArray number = QByteArray::number(row);
        xml += "<row r=\"" + number + "\" spans=\"1:10\">";
        for (int column = 0; column < sheetColumns; ++column) {
            const bool isText = column % 2 == 0;
            const int value = row * sheetColumns + column;
            xml += "<c r=\"" + QByteArray(1, char('A' + column)) + number + "\"" +
                   (isText ? " t=\"s\"" : "") + "><v>" +
                   QByteArray::number(isText ? value % differentStrings : value * 1.25, 'g', 12) +
                   "</v></c>";
        }
        xml += "</row>";
    }
    return xml + "</sheetData></worksheet>";
}

QByteArray stringsXml()
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<sst "
                     "xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
    for (int i = 0; i < differentStrings; ++i)
        xml += "<si><t>Customer number " + QByteArray::number(i) + "</t></si>";
    return xml + "</sst>";
}

const char relationsXml[] =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "<Relationship Id=\"r1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
    "relationships/%1\" Target=\"%2\"/>%3</Relationships>";

void addPart(zipFile archive, const char *name, const QByteArray &content)
{
    zipOpenNewFileInZip(archive, name, nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, 6);
    zipWriteInFileInZip(archive, content.constData(), unsigned(content.size()));
    zipCloseFileInZip(archive);
}

QByteArray relations(const char *type, const char *target, const char *more)
{
    return QByteArray(relationsXml).replace("%1", type).replace("%2", target).replace("%3", more);
}

// A workbook as small as other programs still accept it.
QString largeWorkbook()
{
    const QString path = directory() + "/large.xlsx";
    if (QFile::exists(path))
        return path;
    zipFile archive = zipOpen64(path.toUtf8().constData(), APPEND_STATUS_CREATE);
    const QByteArray content = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
    addPart(archive, "[Content_Types].xml",
            "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
            "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package."
            "relationships+xml\"/><Default Extension=\"xml\" ContentType=\"application/xml\"/>"
            "<Override PartName=\"/xl/workbook.xml\" ContentType=\"" +
                content +
                "sheet.main+xml\"/><Override PartName=\"/xl/worksheets/sheet1.xml\" "
                "ContentType=\"" +
                content +
                "worksheet+xml\"/><Override PartName=\"/xl/sharedStrings.xml\" ContentType=\"" +
                content + "sharedStrings+xml\"/></Types>");
    addPart(archive, "_rels/.rels", relations("officeDocument", "xl/workbook.xml", ""));
    addPart(archive, "xl/_rels/workbook.xml.rels",
            relations("worksheet", "worksheets/sheet1.xml",
                      "<Relationship Id=\"r2\" Type=\"http://schemas.openxmlformats.org/"
                      "officeDocument/2006/relationships/sharedStrings\" "
                      "Target=\"sharedStrings.xml\"/>"));
    addPart(archive, "xl/workbook.xml",
            "<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
            "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
            "<sheets><sheet name=\"Data\" sheetId=\"1\" r:id=\"r1\"/></sheets></workbook>");
    addPart(archive, "xl/sharedStrings.xml", stringsXml());
    addPart(archive, "xl/worksheets/sheet1.xml", sheetXml());
    zipClose(archive, nullptr);
    return path;
}

// Fields like those of a list of orders, a fifth of them quoted.
QString largeDelimitedFile()
{
    const QString path = directory() + "/large.csv";
    QFile file(path);
    if (file.exists())
        return path;
    file.open(QIODevice::WriteOnly);
    file.write("id,customer,street,city,amount,currency,state,date,note,flag\n");
    for (int row = 0; file.pos() < delimitedMegabytes * 1000 * 1000; ++row) {
        const QByteArray number = QByteArray::number(row);
        file.write(number + ",Customer " + number + ",\"Long Street, " + number +
                   "\",Springfield," + QByteArray::number(row * 1.25, 'f', 2) +
                   ",EUR,open,2024-02-29,\"said \"\"hello\"\" twice\",yes\n");
    }
    return path;
}

void inflatePart(unzFile archive, const char *name, QByteArray *content)
{
    unz_file_info64 info = {};
    unzLocateFile(archive, name, 1);
    unzGetCurrentFileInfo64(archive, &info, nullptr, 0, nullptr, 0, nullptr, 0);
    content->resize(int(info.uncompressed_size));
    unzOpenCurrentFile(archive);
    unzReadCurrentFile(archive, content->data(), unsigned(content->size()));
    unzCloseCurrentFile(archive);
}

void inflateAndWalk(const QString &path)
{
    unzFile archive = unzOpen(path.toUtf8().constData());
    for (const char *name : {"xl/sharedStrings.xml", "xl/worksheets/sheet1.xml"}) {
        QByteArray content;
        inflatePart(archive, name, &content);
        QXmlStreamReader reader(content);
        while (!reader.atEnd())
            benchmark::DoNotOptimize(reader.readNext());
    }
    unzClose(archive);
}

// What the script prints: the seconds that it took, without its start. Without Python there are
// none.
double secondsOfPython(const char *script, const QString &path)
{
    for (const QString python : {"/usr/bin/python3", "python3"}) {
        QProcess process;
        process.start(python, {"-c", script, path});
        process.waitForFinished(-1);
        if (process.exitCode() == 0)
            return process.readAllStandardOutput().trimmed().toDouble();
    }
    return std::numeric_limits<double>::quiet_NaN();
}

double bytesInUse()
{
    return double(mallinfo2().uordblks) + double(mallinfo2().hblkhd);
}

// The limit: each field as a view into the bytes of the file.
void readViews(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    const QByteArray content = file.readAll();
    std::vector<std::vector<std::string_view>> rows(1);
    bool isQuoted = false;
    const char *start = content.begin();
    for (const char *c = start; c != content.end(); ++c) {
        if (*c == '"')
            isQuoted = !isQuoted;
        if (isQuoted || (*c != ',' && *c != '\n'))
            continue;
        rows.back().emplace_back(start, std::size_t(c - start));
        start = c + 1;
        if (*c == '\n')
            rows.emplace_back();
    }
    benchmark::DoNotOptimize(rows);
}

void xlsxSheet(benchmark::State &state)
{
    const QString path = largeWorkbook();
    const char script[] = "import sys, time, openpyxl\n"
                          "start = time.perf_counter()\n"
                          "book = openpyxl.load_workbook(sys.argv[1], read_only=True)\n"
                          "rows = [row for row in book.active.iter_rows(values_only=True)]\n"
                          "assert len(rows) == 100000\n"
                          "print(time.perf_counter() - start)\n";
    Ratio ratio;
    double own = std::numeric_limits<double>::max();
    double python = own;
    for (auto _ : state) {
        for (int round = 0; round < rounds; ++round) {
            std::unique_ptr<TestDataSet> set;
            own = std::min(own,
                           ratio.measure([&] { set.reset(TestDataSet::createTestDataSet(path)); },
                                         [&] { inflateAndWalk(path); }));
            python = std::min(python, secondsOfPython(script, path));
        }
    }
    state.counters["times_of_unzip_and_parse"] = ratio.value();
    state.counters["times_faster_than_openpyxl"] = python / own;
}

void delimitedFile(benchmark::State &state)
{
    const QString path = largeDelimitedFile();
    const char script[] = "import csv, sys, time\n"
                          "start = time.perf_counter()\n"
                          "with open(sys.argv[1], encoding='utf-8', newline='') as file:\n"
                          "    rows = list(csv.reader(file))\n"
                          "print(time.perf_counter() - start)\n";
    Ratio ratio;
    double own = std::numeric_limits<double>::max();
    double python = own;
    for (auto _ : state) {
        for (int round = 0; round < rounds; ++round) {
            const double before = bytesInUse();
            std::unique_ptr<TsvTestDataSet> set;
            const auto read = [&] { set = std::make_unique<TsvTestDataSet>(path, ','); };
            own = std::min(own, ratio.measure(read, [&] { readViews(path); }));
            const double fields = double(set->count()) * set->header()->count();
            state.counters["bytes_per_field"] = (bytesInUse() - before) / fields;
            python = std::min(python, secondsOfPython(script, path));
        }
    }
    state.counters["times_of_views"] = ratio.value();
    state.counters["times_faster_than_python_csv"] = python / own;
}

} // namespace

BENCHMARK(xlsxSheet)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(delimitedFile)->Iterations(1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
