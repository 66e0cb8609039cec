#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

class ReportFile;

/// JUnit XML with a test case for each test case and for each section with results, written at once
/// by the END entry.
///
/// An entry belongs to the innermost test case or section that is open, a section without results
/// to what is around it. A test case takes the time that none of its sections takes, so that the
/// times add up. Results outside of any test case make one of their own.
class MORVEX_EXPORT JUnitReportGenerator : public TestReportGenerator
{
public:
    static Result create(const QString &path);
    ~JUnitReportGenerator() override;

    /// Does nothing.
    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    explicit JUnitReportGenerator(std::unique_ptr<ReportFile> file);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
