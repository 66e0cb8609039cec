#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

class ReportFile;

/// JUnit XML with a test case for each result, written at once by generateSummary.
class MORVEX_EXPORT XmlJUnitReportGenerator : public TestReportGenerator
{
public:
    static Result create(const QString &path);
    ~XmlJUnitReportGenerator() override;

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    explicit XmlJUnitReportGenerator(std::unique_ptr<ReportFile> file);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
