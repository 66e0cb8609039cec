#include "test/xmlincrementalreportgenerator.h"

#include "test/report/testresultelement.h"
#include "test/reportgeneratorshared.h"

#include <utility>

namespace Morvex {

XmlIncrementalReportGenerator::XmlIncrementalReportGenerator(std::unique_ptr<ReportFile> file)
    : m_file(std::move(file))
{
    dumpElement(flatReportElement(), OpenTag);
}

XmlIncrementalReportGenerator::~XmlIncrementalReportGenerator()
{
    if (!m_run.isGivenUp() || !isReportSummaryWanted())
        return;
    handleEntry(RunWatch::givenUpEntry());
    generateSummary();
}

TestReportGenerator::Result XmlIncrementalReportGenerator::create(const QString &path)
{
    auto file = std::make_unique<ReportFile>();
    const QString error = file->open(path, FreshFileName, ReportFile::LocalOnStdStream);
    if (!error.isEmpty())
        return {nullptr, error};
    return {new XmlIncrementalReportGenerator(std::move(file)), QString()};
}

void XmlIncrementalReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    m_run.see(entry.type);
    dumpElement(testResultElement(convertSectionEventToLogEvent(entry), m_times), WholeElement);
}

void XmlIncrementalReportGenerator::generateSummary()
{
    dumpElement(summaryElement(*this), WholeElement);
    dumpElement(flatReportElement(), CloseTag);
}

void XmlIncrementalReportGenerator::dumpElement(const XmlElement &element, WriteMode mode)
{
    m_text.resize(0);
    dumpElementToStream(element, mode, &m_text, m_indent);
    m_file->write(m_text);
    m_file->flush();
}

} // namespace Morvex
