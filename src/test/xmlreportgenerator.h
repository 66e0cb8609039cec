#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

class ReportFile;

/// The flat XML log with its counts at the top, written at once by generateSummary.
class MORVEX_EXPORT XmlReportGenerator : public TestReportGenerator
{
public:
    static Result create(const QString &path);
    ~XmlReportGenerator() override;

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    explicit XmlReportGenerator(std::unique_ptr<ReportFile> file);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
