#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

class ReportFile;

/// The run as an XML Spreadsheet 2003 document: a sheet with a row for each entry and one with the
/// counts. Written at once by generateSummary.
class MORVEX_EXPORT XlsReportGenerator : public TestReportGenerator
{
public:
    static Result create(const QString &path);
    ~XlsReportGenerator() override;

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    explicit XlsReportGenerator(std::unique_ptr<ReportFile> file);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
