#include "test/xmlreportgenerator.h"

#include "test/report/bufferedreport.h"
#include "test/report/countertable.h"
#include "test/report/openreport.h"
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
    Counters counters;
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
    countResult(d->counters, entry.type);
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
    for (const CounterRow::Member member : flatCounters())
        startNode->addAttribute(counterRow(member).name, counters.*member);
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
