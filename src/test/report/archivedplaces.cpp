#include "test/report/archivedplaces.h"

namespace Morvex {

ArchivedPlaces::ArchivedPlaces(TestReportGenerator *report, const QString &resultDir,
                               const QString &archive)
    : MultiReportGenerator({report})
    , m_resultDir(resultDir + QLatin1Char('/'))
    , m_archive(archive + QLatin1Char('/'))
{
}

void ArchivedPlaces::doHandleEntry(const TestResult::Entry &entry)
{
    TestResult::Entry placed = entry;
    for (QString *text : {&placed.message, &placed.details, &placed.attachmentUri})
        text->replace(m_resultDir, m_archive);
    MultiReportGenerator::doHandleEntry(placed);
}

} // namespace Morvex
