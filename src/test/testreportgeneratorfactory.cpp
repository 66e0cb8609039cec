#include "test/testreportgeneratorfactory.h"

#include "shared/realpath.h"
#include "shared/system/trace.h"
#include "test/htmlreportgenerator.h"
#include "test/jsonreportgenerator.h"
#include "test/junitreportgenerator.h"
#include "test/multireportgenerator.h"
#include "test/nullreportgenerator.h"
#include "test/output/reporttarget.h"
#include "test/quillbasereportgenerator.h"
#include "test/rawreportgenerator.h"
#include "test/report/archivedplaces.h"
#include "test/stdoutreportgenerator.h"
#include "test/xlsreportgenerator.h"
#include "test/xml2reportgenerator.h"
#include "test/xml3reportgenerator.h"
#include "test/xmlincrementalreportgenerator.h"
#include "test/xmljunitreportgenerator.h"
#include "test/xmlreportgenerator.h"
#include "test/zipxml3reportgenerator.h"

#include <QDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <list>
#include <memory>

namespace Morvex {
namespace {

using Factory = TestReportGeneratorFactory;
using Result = TestReportGenerator::Result;

struct Arguments
{
    QString path;
    TestReportGenerator::TestType type;
    QString *resultDir;
};

struct KeywordRow
{
    const char *name;
    Factory::Target target;
    Factory::Traits traits;
    // The number after the dot goes to create.
    const char *version;
    const char *file;
    Result (*create)(const Arguments &, int version);
    const char *description;
};

Result createStdout(const Arguments &arguments, int)
{
    return StdoutReportGenerator::create(arguments.path);
}

Result createNull(const Arguments &, int)
{
    return NullReportGenerator::create();
}

Result createRaw(const Arguments &arguments, int)
{
    return RawReportGenerator::create(arguments.path);
}

Result createXml3(const Arguments &arguments, int version)
{
    return Xml3ReportGenerator::create(arguments.path, arguments.type, version,
                                       arguments.resultDir);
}

Result createZipXml3(const Arguments &arguments, int version)
{
    return ZipXml3ReportGenerator::create(arguments.path, arguments.type, version,
                                          arguments.resultDir);
}

Result createJson(const Arguments &arguments, int version)
{
    return JsonReportGenerator::create(
        arguments.path, arguments.type,
        static_cast<unsigned short>(JsonReportGenerator::Version1_0 + version),
        arguments.resultDir);
}

Result createHtml(const Arguments &arguments, int)
{
    return HtmlReportGenerator::create(arguments.path, arguments.type, arguments.resultDir);
}

Result createJUnit(const Arguments &arguments, int)
{
    return JUnitReportGenerator::create(arguments.path);
}

Result createXml(const Arguments &arguments, int)
{
    return XmlReportGenerator::create(arguments.path);
}

Result createXmlIncremental(const Arguments &arguments, int)
{
    return XmlIncrementalReportGenerator::create(arguments.path);
}

Result createXml2(const Arguments &arguments, int version)
{
    return Xml2ReportGenerator::create(arguments.path, version);
}

Result createXmlJUnit(const Arguments &arguments, int)
{
    return XmlJUnitReportGenerator::create(arguments.path);
}

Result createXls(const Arguments &arguments, int)
{
    return XlsReportGenerator::create(arguments.path);
}

Result createQuillbase(const Arguments &arguments, int)
{
    return QuillbaseReportGenerator::create(arguments.path, arguments.type);
}

const Factory::Traits atTheEnd = {};
const Factory::Traits severalRuns = Factory::Grows | Factory::HoldsSeveralRuns;
const Factory::Traits freshFile = Factory::Grows | Factory::TakesFreeName;

const KeywordRow keywordTable[] = {
    {"stdout", Factory::File, freshFile, "", "", createStdout,
     "console report, or the same lines in a file"},
    {"null", Factory::NoTarget, atTheEnd, "", "", createNull, "no report, only the exit status"},
    {"xml3", Factory::Directory, Factory::Grows, "3.0", "results.xml", createXml3,
     "directory with results.xml, version 3.0"},
    {"xml3.1", Factory::Directory, Factory::Grows, "3.1", "results.xml", createXml3,
     "directory with results.xml, version 3.1, with visual verifications"},
    {"xml3.2", Factory::Directory, Factory::Grows, "3.2", "results.xml", createXml3,
     "directory with results.xml, version 3.2, with retries"},
    {"xml3.3", Factory::Directory, Factory::Grows, "3.3", "results.xml", createXml3,
     "directory with results.xml, version 3.3, with call stacks"},
    {"xml3.4", Factory::Directory, Factory::Grows, "3.4", "results.xml", createXml3,
     "directory with results.xml, version 3.4, with the user name"},
    {"xml3.5", Factory::Directory, Factory::Grows, "3.5", "results.xml", createXml3,
     "directory with results.xml, version 3.5, with milliseconds and videos"},
    {"zipxml3", Factory::File, atTheEnd, "3.0", "", createZipXml3,
     "the directory of xml3 as one zip file"},
    {"zipxml3.1", Factory::File, atTheEnd, "3.1", "", createZipXml3,
     "the directory of xml3.1 as one zip file"},
    {"zipxml3.2", Factory::File, atTheEnd, "3.2", "", createZipXml3,
     "the directory of xml3.2 as one zip file"},
    {"zipxml3.3", Factory::File, atTheEnd, "3.3", "", createZipXml3,
     "the directory of xml3.3 as one zip file"},
    {"zipxml3.4", Factory::File, atTheEnd, "3.4", "", createZipXml3,
     "the directory of xml3.4 as one zip file"},
    {"zipxml3.5", Factory::File, atTheEnd, "3.5", "", createZipXml3,
     "the directory of xml3.5 as one zip file"},
    {"json", Factory::Directory, atTheEnd, "1.0", "results.json", createJson,
     "directory with results.json, version 1.0"},
    {"json1.1", Factory::Directory, atTheEnd, "1.1", "results.json", createJson,
     "directory with results.json, version 1.1"},
    {"json1.2", Factory::Directory, atTheEnd, "1.2", "results.json", createJson,
     "directory with results.json, version 1.2, with retries"},
    {"html", Factory::Directory, severalRuns, "1.2", "data/results-v1.js", createHtml,
     "directory with pages for a browser; each run adds to it"},
    {"junit", Factory::File, atTheEnd, "", "", createJUnit,
     "JUnit file: a test case for each test case and section, with its log"},
    {"xml", Factory::File, Factory::NeedsSummary, "1.2", "", createXml,
     "flat XML log, written at the end of the run"},
    {"xmlIncremental", Factory::File, freshFile | Factory::NeedsSummary, "1.2", "",
     createXmlIncremental, "flat XML log that grows with the run, never on top of another"},
    {"xml2", Factory::File, freshFile, "2.0", "", createXml2,
     "nested XML log that grows with the run"},
    {"xml2.1", Factory::File, freshFile, "2.1", "", createXml2,
     "xml2 with kinds of verifications and details of failed ones"},
    {"xml2.2", Factory::File, freshFile, "2.2", "", createXml2,
     "xml2.1 with the differences of tables"},
    {"xmljunit", Factory::File, Factory::NeedsSummary, "", "", createXmlJUnit,
     "JUnit file: a test case for each result"},
    {"xls", Factory::File, Factory::NeedsSummary, "", "", createXls,
     "spreadsheet with all entries and a sheet of counts"},
    {"quillbase", Factory::Connection, Factory::Grows, "", "", createQuillbase,
     "upload while the tests run; PATH is an address of http or https: "
     "http://HOST[:PORT]/project/NAME?token=TOKEN"},
    {"raw", Factory::Connection, Factory::Grows, "", "", createRaw, ""},
};

// Null for a name that no format has.
const KeywordRow *rowOf(const QString &name)
{
    const auto row =
        std::find_if(std::begin(keywordTable), std::end(keywordTable),
                     [&](const KeywordRow &other) { return name == QLatin1String(other.name); });
    return row == std::end(keywordTable) ? nullptr : row;
}

// An address whose format was forgotten may hold a token.
QString withoutQuery(const QString &name)
{
    return name.section(QLatin1Char('?'), 0, 0);
}

Result createByName(const QString &name, const Arguments &arguments)
{
    const KeywordRow *row = rowOf(name);
    if (!row)
        return {nullptr,
                QStringLiteral("Unknown or unsupported report generator: ") + withoutQuery(name)};
    const auto version = QString::fromLatin1(row->version);
    return row->create(arguments, version.section(QLatin1Char('.'), 1).toInt());
}

QString nameIn(const QString &value)
{
    return value.section(QLatin1Char(','), 0, 0);
}

QString pathIn(const QString &value)
{
    const QString path = value.section(QLatin1Char(','), 1);
    return path.endsWith(QDir::separator()) ? path.chopped(1) : path;
}

Result createOne(const QString &value, TestReportGenerator::TestType type, QString *resultDir)
{
    const QString name = nameIn(value);
    const QString path = pathIn(value);
    qCDebug(traceReportGen) << "generatorName" << name << "generatorConfig" << path;
    const Result result = createByName(name, {path, type, resultDir});
    if (result.error.isEmpty())
        return result;
    return {nullptr,
            QStringLiteral("%1 report generator: %2").arg(withoutQuery(name), result.error)};
}

bool isArchive(const QString &value)
{
    return rowOf(nameIn(value))->create == createZipXml3;
}

// Whether the report is read after the run. What is uploaded is sent before.
bool isReadLater(const QString &value)
{
    return rowOf(nameIn(value))->create != createQuillbase && !isArchive(value);
}

} // namespace

Result TestReportGeneratorFactory::create(const QStringList &values, QString *resultDir,
                                          TestReportGenerator::TestType type)
{
    qCDebug(traceReportGen) << "Creating " << values.size()
                            << " report generators from commandline";
    std::vector<std::unique_ptr<TestReportGenerator>> generators;
    TargetsKept kept;
    for (const QString &value : values) {
        const Result result = createOne(value, type, resultDir);
        if (!result.error.isEmpty())
            return result;
        generators.emplace_back(result.generator);
    }
    const QString error = kept.replace();
    if (!error.isEmpty())
        return {nullptr, error};
    qCDebug(traceReportGen) << "Created " << values.size() << " report generators";
    if (generators.empty())
        return {new StdoutReportGenerator, QString()};
    if (generators.size() == 1)
        return {generators.front().release(), QString()};
    const auto archive = std::find_if(values.begin(), values.end(), isArchive);
    std::list<TestReportGenerator *> members;
    for (std::size_t i = 0; i < generators.size(); ++i) {
        TestReportGenerator *generator = generators[i].release();
        members.push_back(
            archive != values.end() && isReadLater(values[static_cast<int>(i)])
                ? new ArchivedPlaces(generator, *resultDir, cleanedPath(pathIn(*archive)))
                : generator);
    }
    return {new MultiReportGenerator(members), QString()};
}

TestReportGenerator *TestReportGeneratorFactory::create(const QStringList &values,
                                                        TestReportGenerator::TestType type)
{
    QString resultDir;
    const Result result = create(values, &resultDir, type);
    if (!result.error.isEmpty()) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(result.error));
        std::exit(1);
    }
    return result.generator;
}

TestReportGeneratorFactory::Traits TestReportGeneratorFactory::traitsOf(const QString &value)
{
    const KeywordRow *row = rowOf(nameIn(value));
    return row ? row->traits : Traits();
}

std::vector<TestReportGeneratorFactory::Keyword> TestReportGeneratorFactory::keywords()
{
    std::vector<Keyword> keywords;
    for (const KeywordRow &row : keywordTable)
        keywords.push_back({QLatin1String(row.name), QLatin1String(row.description), row.target,
                            row.traits, QLatin1String(row.version), QLatin1String(row.file)});
    return keywords;
}

} // namespace Morvex
