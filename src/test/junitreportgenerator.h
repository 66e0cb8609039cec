#pragma once

#include "morvex_export.h"
#include "test/output/reportfile.h"
#include "test/testreportgenerator.h"

#include <QString>

#include <memory>

namespace Morvex {

/// JUnit XML with a test case for each test case and for each section with results, written at once
/// by the END entry. When the run is given up before its end, the destructor writes what there is.
///
/// An entry belongs to the innermost test case or section that is open, a section without results
/// to what is around it. A test case takes the time that none of its sections takes, so that the
/// times add up. Results outside of any test case make one of their own.
class MORVEX_EXPORT JUnitReportGenerator : public TestReportGenerator
{
public:
    ~JUnitReportGenerator() override;

    static Result create(const QString &path);

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct JUnitTestCase;
    struct JUnitTestSuite;
    struct Private;

    explicit JUnitReportGenerator(std::unique_ptr<ReportFile> file);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
