#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

class ReportFile;

/// The flat XML log as a file that grows: each entry is in the file when it has been handled. The
/// summary comes last and closes the root, so the file of a crashed run lacks that close tag.
class MORVEX_EXPORT XmlIncrementalReportGenerator : public TestReportGenerator
{
public:
    /// Leaves a file that holds something, or is being written, alone and takes the next free name.
    static Result create(const QString &path);
    ~XmlIncrementalReportGenerator() override;

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    explicit XmlIncrementalReportGenerator(std::unique_ptr<ReportFile> file);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
