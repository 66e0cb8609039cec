#include "test/xmlincrementalreportgenerator.h"

#include "test/report/openreport.h"
#include "test/report/testresultelement.h"
#include "test/reportgeneratorshared.h"

#include <utility>

namespace Morvex {

struct XmlIncrementalReportGenerator::Private
{
    std::unique_ptr<ReportFile> file;
    int indent = 0;
    Iso8601Time times;
    // Kept for its memory.
    QByteArray text;

    void dumpElement(const XmlElement &element, WriteMode mode);
};

XmlIncrementalReportGenerator::XmlIncrementalReportGenerator(std::unique_ptr<ReportFile> file)
    : d(std::make_unique<Private>())
{
    d->file = std::move(file);
    d->dumpElement(flatReportElement(), OpenTag);
}

XmlIncrementalReportGenerator::~XmlIncrementalReportGenerator() = default;

TestReportGenerator::Result XmlIncrementalReportGenerator::create(const QString &path)
{
    return createInFile(path, FreshFileName, ReportFile::LocalOnStdStream,
                        [](std::unique_ptr<ReportFile> file) {
                            return new XmlIncrementalReportGenerator(std::move(file));
                        });
}

void XmlIncrementalReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    d->dumpElement(testResultElement(convertSectionEventToLogEvent(entry), d->times), WholeElement);
}

void XmlIncrementalReportGenerator::generateSummary()
{
    d->dumpElement(summaryElement(*this), WholeElement);
    d->dumpElement(flatReportElement(), CloseTag);
}

void XmlIncrementalReportGenerator::Private::dumpElement(const XmlElement &element, WriteMode mode)
{
    text.resize(0);
    dumpElementToStream(element, mode, &text, indent);
    file->write(text);
    file->flush();
}

} // namespace Morvex
