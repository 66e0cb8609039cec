#pragma once

#include "morvex_export.h"
#include "test/output/reportfile.h"
#include "test/output/xmlelement.h"
#include "test/report/bufferedreport.h"
#include "test/report/iso8601time.h"
#include "test/report/runwatch.h"
#include "test/report/testcasecounters.h"
#include "test/testreportgenerator.h"

#include <QString>

#include <array>
#include <memory>
#include <optional>

namespace Morvex {

/// The run as an XML Spreadsheet 2003 document: a sheet with a row for each entry and one with the
/// counts. Written at once by generateSummary; when the run is given up before its end, the
/// destructor writes what there is.
class MORVEX_EXPORT XlsReportGenerator : public TestReportGenerator
{
public:
    ~XlsReportGenerator() override;

    static Result create(const QString &path);

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    static const int columnCount = 6;

    explicit XlsReportGenerator(std::unique_ptr<ReportFile> file);

    XmlElement rowElement(const TestResult::Entry &entry, const QString &message);
    QString cellText(int column, const QString &text);
    void startTestCase(const TestResult::Entry &entry);
    void fillStartRow();
    QByteArray serializedRow(const XmlElement &row) const;
    void dumpReport();
    int indentStep() const;

    std::unique_ptr<ReportFile> m_file;
    BufferedReport m_rows;
    // In points, for the widest text of each column so far.
    std::array<double, columnCount> m_columnWidths;
    // The start of the current test case, held back until its counts are known.
    std::optional<TestResult::Entry> m_startOfTestCase;
    bool m_hasTestCase = false;
    TestCaseCounters m_counters;
    RunWatch m_run;
    Iso8601Time m_times;
};

} // namespace Morvex
