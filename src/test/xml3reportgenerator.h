#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

/// The result directory of the xml3 report. Each element is flushed to "results.xml" as soon as it
/// is complete, so that after a crash only the end tags of the open elements are missing.
class MORVEX_EXPORT Xml3ReportGenerator : public TestReportGenerator
{
public:
    /// Overwrites a report that is in the directory. @p version is 0 to 5.
    static Result create(const QString &path, TestType type, int version, QString *resultDir);
    ~Xml3ReportGenerator() override;

    /// Does nothing: the format has no counters.
    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    explicit Xml3ReportGenerator(std::unique_ptr<Private> data);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
