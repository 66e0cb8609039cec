#pragma once

#include "morvex_export.h"
#include "test/output/reportfile.h"
#include "test/output/xmlelement.h"
#include "test/report/bufferedreport.h"
#include "test/report/iso8601time.h"
#include "test/report/runwatch.h"
#include "test/report/testcasecounters.h"
#include "test/testreportgenerator.h"

#include <memory>
#include <optional>

namespace Morvex {

/// The flat XML log with its counts at the top, written at once by generateSummary. When the run is
/// given up before its end, the destructor writes what there is.
class MORVEX_EXPORT XmlReportGenerator : public TestReportGenerator
{
public:
    ~XmlReportGenerator() override;

    static Result create(const QString &path);

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    explicit XmlReportGenerator(std::unique_ptr<ReportFile> file);

    void populateStartNode();
    void dumpReport();

    std::unique_ptr<ReportFile> m_file;
    BufferedReport m_results;
    // The start of the current test case, held back until its counts are known.
    std::optional<XmlElement> m_startNode;
    TestCaseCounters m_counters;
    RunWatch m_run;
    Iso8601Time m_times;
};

} // namespace Morvex
