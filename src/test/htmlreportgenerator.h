#pragma once

#include "morvex_export.h"
#include "test/jsonreportgenerator.h"

#include <memory>

namespace Morvex {

/// The web report: a directory with pages for a browser, and a data file to which each run adds one
/// statement. Each entry is in the file as soon as it is logged.
class MORVEX_EXPORT HtmlReportGenerator : public JsonReportGenerator
{
public:
    /// Makes a new report with the pages below MORVEX_PREFIX, or adds to the report that is in the
    /// directory, which is repaired first when its last run was killed.
    static Result create(const QString &path, TestType type, QString *resultDir);
    ~HtmlReportGenerator() override;

protected:
    void init() override;
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    HtmlReportGenerator(std::unique_ptr<std::ostream> stream, const QString &resultDir,
                        TestType type);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
