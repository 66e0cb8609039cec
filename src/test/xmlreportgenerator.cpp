#include "test/xmlreportgenerator.h"

#include "test/report/testresultelement.h"

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

XmlReportGenerator::XmlReportGenerator(std::unique_ptr<ReportFile> file)
    : m_file(std::move(file))
{
}

XmlReportGenerator::~XmlReportGenerator()
{
    if (!m_run.isGivenUp() || !isReportSummaryWanted())
        return;
    handleEntry(RunWatch::givenUpEntry());
    generateSummary();
}

TestReportGenerator::Result XmlReportGenerator::create(const QString &path)
{
    auto file = std::make_unique<ReportFile>();
    const QString error = file->open(path, {}, ReportFile::LocalOnStdStream);
    if (!error.isEmpty())
        return {nullptr, error};
    return {new XmlReportGenerator(std::move(file)), QString()};
}

void XmlReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    m_run.see(entry.type);
    m_counters.count(entry.type);
    if (entry.type != TestResult::START_TEST_CASE) {
        m_results.append(serialized(testResultElement(entry, m_times)));
        return;
    }
    populateStartNode();
    m_counters = {};
    m_startNode = testResultElement(entry, m_times);
    m_results.openGap();
}

void XmlReportGenerator::populateStartNode()
{
    if (!m_startNode)
        return;
    m_startNode->addAttribute(QLatin1String("passes"), m_counters.passes)
        .addAttribute(QLatin1String("fails"), m_counters.fails)
        .addAttribute(QLatin1String("expected_fails"), m_counters.xfails)
        .addAttribute(QLatin1String("unexpected_passes"), m_counters.xpasses)
        .addAttribute(QLatin1String("errors"), m_counters.errors)
        .addAttribute(QLatin1String("fatals"), m_counters.fatals)
        .addAttribute(QLatin1String("warnings"), m_counters.warnings);
    m_results.fillGap(serialized(*m_startNode));
    m_startNode.reset();
}

void XmlReportGenerator::generateSummary()
{
    populateStartNode();
    dumpReport();
}

void XmlReportGenerator::dumpReport()
{
    const XmlElement root = flatReportElement();
    int indent = 0;
    QByteArray head;
    dumpElementToStream(root, OpenTag, &head, indent);
    dumpElementToStream(summaryElement(*this), WholeElement, &head, indent);
    QByteArray tail;
    dumpElementToStream(root, CloseTag, &tail, indent);
    m_file->write(head);
    m_results.writeTo(*m_file);
    m_file->write(tail);
    m_file->flush();
}

} // namespace Morvex
