#include "test/testreportgeneratorfactory.h"

#include "shared/trace.h"
#include "test/htmlreportgenerator.h"
#include "test/jsonreportgenerator.h"
#include "test/junitreportgenerator.h"
#include "test/multireportgenerator.h"
#include "test/nullreportgenerator.h"
#include "test/quillbasereportgenerator.h"
#include "test/rawreportgenerator.h"
#include "test/stdoutreportgenerator.h"
#include "test/xlsreportgenerator.h"
#include "test/xml2reportgenerator.h"
#include "test/xml3reportgenerator.h"
#include "test/xmlincrementalreportgenerator.h"
#include "test/xmljunitreportgenerator.h"
#include "test/xmlreportgenerator.h"
#include "test/zipxml3reportgenerator.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <list>
#include <memory>

namespace Morvex {
namespace {

using Result = TestReportGenerator::Result;

struct Arguments
{
    QString path;
    TestReportGenerator::TestType type;
    QString *resultDir;
};

// As many as the system follows.
const int maxLinks = 40;

// One row a keyword: all that the system knows of a format beside its own file pair.
struct KeywordRow
{
    QLatin1String name;
    QLatin1String description;
    // The file that the format writes in the directory that its path names; empty when the path
    // names the file, null when the format writes none.
    const char *file;
    Result (*create)(const Arguments &, int version);
    int version;
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
    return JsonReportGenerator::create(arguments.path, arguments.type,
                                       static_cast<unsigned short>(version), arguments.resultDir);
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

const KeywordRow keywordTable[] = {
    {QLatin1String("stdout"), QLatin1String("console report, or the same lines in a file"), "",
     createStdout, 0},
    {QLatin1String("null"), QLatin1String("no report, only the exit status"), nullptr, createNull,
     0},
    {QLatin1String("xml3"), QLatin1String("directory with results.xml, version 3.0"), "results.xml",
     createXml3, 0},
    {QLatin1String("xml3.1"),
     QLatin1String("directory with results.xml, version 3.1, with visual verifications"),
     "results.xml", createXml3, 1},
    {QLatin1String("xml3.2"),
     QLatin1String("directory with results.xml, version 3.2, with retries"), "results.xml",
     createXml3, 2},
    {QLatin1String("xml3.3"),
     QLatin1String("directory with results.xml, version 3.3, with call stacks"), "results.xml",
     createXml3, 3},
    {QLatin1String("xml3.4"),
     QLatin1String("directory with results.xml, version 3.4, with the user name"), "results.xml",
     createXml3, 4},
    {QLatin1String("xml3.5"),
     QLatin1String("directory with results.xml, version 3.5, with milliseconds and videos"),
     "results.xml", createXml3, 5},
    {QLatin1String("zipxml3"), QLatin1String("the directory of xml3 as one zip file"), "",
     createZipXml3, 0},
    {QLatin1String("zipxml3.1"), QLatin1String("the directory of xml3.1 as one zip file"), "",
     createZipXml3, 1},
    {QLatin1String("zipxml3.2"), QLatin1String("the directory of xml3.2 as one zip file"), "",
     createZipXml3, 2},
    {QLatin1String("zipxml3.3"), QLatin1String("the directory of xml3.3 as one zip file"), "",
     createZipXml3, 3},
    {QLatin1String("zipxml3.4"), QLatin1String("the directory of xml3.4 as one zip file"), "",
     createZipXml3, 4},
    {QLatin1String("zipxml3.5"), QLatin1String("the directory of xml3.5 as one zip file"), "",
     createZipXml3, 5},
    {QLatin1String("json"), QLatin1String("directory with results.json, version 1.0"),
     "results.json", createJson, JsonReportGenerator::Version1_0},
    {QLatin1String("json1.1"), QLatin1String("directory with results.json, version 1.1"),
     "results.json", createJson, JsonReportGenerator::Version1_1},
    {QLatin1String("json1.2"),
     QLatin1String("directory with results.json, version 1.2, with retries"), "results.json",
     createJson, JsonReportGenerator::Version1_2},
    {QLatin1String("html"),
     QLatin1String("directory with pages for a browser; each run adds to it"), "data/results-v1.js",
     createHtml, 0},
    {QLatin1String("junit"),
     QLatin1String("JUnit file: a test case for each test case and section, with its log"), "",
     createJUnit, 0},
    {QLatin1String("xml"), QLatin1String("flat XML log, written at the end of the run"), "",
     createXml, 0},
    {QLatin1String("xmlIncremental"),
     QLatin1String("flat XML log that grows with the run, never on top of another"), "",
     createXmlIncremental, 0},
    {QLatin1String("xml2"), QLatin1String("nested XML log that grows with the run"), "", createXml2,
     0},
    {QLatin1String("xml2.1"),
     QLatin1String("xml2 with kinds of verifications and details of failed ones"), "", createXml2,
     1},
    {QLatin1String("xml2.2"), QLatin1String("xml2.1 with the differences of tables"), "",
     createXml2, 2},
    {QLatin1String("xmljunit"), QLatin1String("JUnit file: a test case for each result"), "",
     createXmlJUnit, 0},
    {QLatin1String("xls"), QLatin1String("spreadsheet with all entries and a sheet of counts"), "",
     createXls, 0},
    {QLatin1String("quillbase"),
     QLatin1String("upload while the tests run; PATH is an address of http or https: "
                   "http://HOST[:PORT]/project/NAME?token=TOKEN"),
     nullptr, createQuillbase, 0},
    {QLatin1String("raw"), QLatin1String(""), "", createRaw, 0},
};

// Null for a name that no format has.
const KeywordRow *rowOf(const QString &name)
{
    const auto row = std::find_if(std::begin(keywordTable), std::end(keywordTable),
                                  [&](const KeywordRow &other) { return name == other.name; });
    return row == std::end(keywordTable) ? nullptr : row;
}

// The same for all ways to name a file, whether it exists or not.
QString identityOf(const QString &path, int links = 0)
{
    const QFileInfo file(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
    if (file.exists())
        return file.canonicalFilePath();
    if (file.isSymLink() && links < maxLinks)
        return identityOf(file.symLinkTarget(), links + 1);
    const QString directory = QFileInfo(file.path()).canonicalFilePath();
    return directory.isEmpty() ? file.filePath() : directory + QLatin1Char('/') + file.fileName();
}

// Two reports in one file would destroy each other.
QString sharedFileError(const QString &path, QStringList &usedPaths)
{
    if (path.isEmpty() || path.startsWith(QLatin1String("/dev/")))
        return {};
    const QString file = identityOf(path);
    if (usedPaths.contains(file))
        return QStringLiteral("Another report is written to '%1' already").arg(file);
    usedPaths += file;
    return {};
}

QString sharedFileError(const KeywordRow &row, const Arguments &arguments, QStringList &usedPaths)
{
    if (!row.file)
        return {};
    if (!*row.file)
        return sharedFileError(arguments.path, usedPaths);
    // The format itself refuses a second directory, or none.
    if (!arguments.resultDir->isEmpty() || arguments.path.isEmpty())
        return {};
    return sharedFileError(arguments.path + QLatin1Char('/') + QLatin1String(row.file), usedPaths);
}

Result createByName(const QString &name, const Arguments &arguments, QStringList &usedPaths)
{
    const KeywordRow *row = rowOf(name);
    if (!row)
        return {nullptr, QStringLiteral("Unknown or unsupported report generator: ") + name};
    const QString error = sharedFileError(*row, arguments, usedPaths);
    return error.isEmpty() ? row->create(arguments, row->version) : Result{nullptr, error};
}

Result createOne(const QString &value, TestReportGenerator::TestType type, QString *resultDir,
                 QStringList &usedPaths)
{
    const int comma = value.indexOf(QLatin1Char(','));
    const QString name = value.left(comma);
    QString path = comma < 0 ? QString() : value.mid(comma + 1);
    if (path.endsWith(QDir::separator()))
        path.chop(1);
    qCDebug(traceReportGen) << "generatorName" << name << "generatorConfig" << path;
    const Result result = createByName(name, {path, type, resultDir}, usedPaths);
    if (result.error.isEmpty())
        return result;
    return {nullptr, QStringLiteral("%1 report generator: %2").arg(name, result.error)};
}

} // namespace

Result TestReportGeneratorFactory::create(const QStringList &values, QString *resultDir,
                                          TestReportGenerator::TestType type)
{
    qCDebug(traceReportGen) << "Creating " << values.size()
                            << " report generators from commandline";
    std::vector<std::unique_ptr<TestReportGenerator>> generators;
    QStringList usedPaths;
    for (const QString &value : values) {
        const Result result = createOne(value, type, resultDir, usedPaths);
        if (!result.error.isEmpty())
            return result;
        generators.emplace_back(result.generator);
    }
    qCDebug(traceReportGen) << "Created " << values.size() << " report generators";
    if (generators.empty())
        return {new StdoutReportGenerator, QString()};
    if (generators.size() == 1)
        return {generators.front().release(), QString()};
    std::list<TestReportGenerator *> members;
    for (auto &generator : generators)
        members.push_back(generator.release());
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

std::vector<TestReportGeneratorFactory::Keyword> TestReportGeneratorFactory::keywords()
{
    std::vector<Keyword> keywords;
    for (const KeywordRow &row : keywordTable)
        keywords.push_back({row.name, row.description});
    return keywords;
}

} // namespace Morvex
