#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

class ReportFile;

/// The nested XML log as a file that grows: each entry is in the file when it has been handled. The
/// file of a crashed run lacks the close tags of what was open.
///
/// A verification element holds the results of one verification point. A result of another
/// verification, one outside of verifications, and a message end it.
class MORVEX_EXPORT Xml2ReportGenerator : public TestReportGenerator
{
public:
    /// Leaves a file that holds something, or is being written, alone and takes the next free name.
    /// From @p version 1 on the report has the kinds of verifications and what is known of failed
    /// ones, from 2 on the differences of tables.
    static Result create(const QString &path, int version);
    ~Xml2ReportGenerator() override;

    /// Does nothing.
    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    Xml2ReportGenerator(std::unique_ptr<ReportFile> file, int version);

    std::unique_ptr<Private> d;
};

} // namespace Morvex
