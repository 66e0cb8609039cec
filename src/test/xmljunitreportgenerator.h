#pragma once

#include "morvex_export.h"
#include "test/output/reportfile.h"
#include "test/output/xmlelement.h"
#include "test/report/bufferedreport.h"
#include "test/report/junitshared.h"
#include "test/report/runwatch.h"
#include "test/testreportgenerator.h"

#include <QDateTime>
#include <QString>

#include <memory>

namespace Morvex {

/// JUnit XML with a test case for each result, written at once by generateSummary. When the run is
/// given up before its end, the destructor writes what there is.
class MORVEX_EXPORT XmlJUnitReportGenerator : public TestReportGenerator
{
public:
    ~XmlJUnitReportGenerator() override;

    static Result create(const QString &path);

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    explicit XmlJUnitReportGenerator(std::unique_ptr<ReportFile> file);

    void updateCounter(const TestResult::Entry &entry);
    void handleByType(const TestResult::Entry &entry);
    void startRun(const TestResult::Entry &entry);
    void startStep(const TestResult::Entry &entry);
    void addTestCase(const TestResult::Entry &entry);
    void appendToSystemOut(const TestResult::Entry &entry);
    XmlElement createTestCaseElement(const TestResult::Entry &entry);
    QString composeUniqueTestCaseName(const QString &className, const TestResult::Entry &entry);
    XmlElement rootElement() const;
    void dumpReport();

    std::unique_ptr<ReportFile> m_file;
    BufferedReport m_testCases;
    BufferedReport m_systemOut;
    JUnitNames m_names;
    QMap<QString, QString> m_properties;
    QString m_runName;
    QString m_testCaseName;
    // In milliseconds of the epoch. The end of the run is the last one.
    qint64 m_stepStart = 0;
    QDateTime m_start;
    int m_tests = 0;
    int m_failures = 0;
    int m_errors = 0;
    RunWatch m_run;
};

} // namespace Morvex
