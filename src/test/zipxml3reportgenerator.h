#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

/// The result directory of the xml3 report as one zip file, which is written at the end of the run.
/// A run that does not reach its end leaves an empty file.
class MORVEX_EXPORT ZipXml3ReportGenerator : public TestReportGenerator
{
public:
    /// The directory of @p path has to exist. The result directory is a temporary one.
    static Result create(const QString &path, TestType type, int version, QString *resultDir);
    ~ZipXml3ReportGenerator() override;

    /// Does nothing.
    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    explicit ZipXml3ReportGenerator(std::unique_ptr<Private> data);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
