#include "test/xmlreportgenerator.h"

#include "test/report/bufferedreport.h"
#include "test/report/openreport.h"
#include "test/report/testcasecounters.h"
#include "test/report/testresultelement.h"

#include <optional>
#include <utility>

namespace Morvex {
namespace {

const int indentStep = 4;

QByteArray serialized(const XmlElement &element)
{
    QByteArray text;
    element.append(text, indentStep, indentStep);
    return text;
}

} // namespace

struct XmlReportGenerator::Private
{
    std::unique_ptr<ReportFile> file;
    BufferedReport results;
    // The start of the current test case, held back until its counts are known.
    std::optional<XmlElement> startNode;
    TestCaseCounters counters;
    Iso8601Time times;

    void populateStartNode();
    void dumpReport(const XmlElement &summary);
};

XmlReportGenerator::XmlReportGenerator(std::unique_ptr<ReportFile> file)
    : d(std::make_unique<Private>())
{
    d->file = std::move(file);
}

XmlReportGenerator::~XmlReportGenerator() = default;

TestReportGenerator::Result XmlReportGenerator::create(const QString &path)
{
    return createInFile(
        path, {}, ReportFile::LocalOnStdStream,
        [](std::unique_ptr<ReportFile> file) { return new XmlReportGenerator(std::move(file)); });
}

void XmlReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    d->counters.count(entry.type);
    if (entry.type != TestResult::START_TEST_CASE) {
        d->results.append(serialized(testResultElement(entry, d->times)));
        return;
    }
    d->populateStartNode();
    d->counters = {};
    d->startNode = testResultElement(entry, d->times);
    d->results.openGap();
}

void XmlReportGenerator::Private::populateStartNode()
{
    if (!startNode)
        return;
    startNode->addAttribute(QLatin1String("passes"), counters.passes)
        .addAttribute(QLatin1String("fails"), counters.fails)
        .addAttribute(QLatin1String("expected_fails"), counters.xfails)
        .addAttribute(QLatin1String("unexpected_passes"), counters.xpasses)
        .addAttribute(QLatin1String("errors"), counters.errors)
        .addAttribute(QLatin1String("fatals"), counters.fatals)
        .addAttribute(QLatin1String("warnings"), counters.warnings);
    results.fillGap(serialized(*startNode));
    startNode.reset();
}

void XmlReportGenerator::generateSummary()
{
    d->populateStartNode();
    d->dumpReport(summaryElement(*this));
}

void XmlReportGenerator::Private::dumpReport(const XmlElement &summary)
{
    const XmlElement root = flatReportElement();
    int indent = 0;
    QByteArray head;
    dumpElementToStream(root, OpenTag, &head, indent);
    dumpElementToStream(summary, WholeElement, &head, indent);
    QByteArray tail;
    dumpElementToStream(root, CloseTag, &tail, indent);
    file->write(head);
    results.writeTo(*file);
    file->write(tail);
    file->flush();
}

} // namespace Morvex
