#pragma once

#include "morvex_export.h"
#include "test/output/reportfile.h"
#include "test/output/xmlelement.h"
#include "test/report/iso8601time.h"
#include "test/report/runwatch.h"
#include "test/testreportgenerator.h"

#include <memory>

namespace Morvex {

/// The flat XML log as a file that grows: each entry is in the file when it has been handled. The
/// summary comes last and closes the root, so the file of a crashed run lacks that close tag.
class MORVEX_EXPORT XmlIncrementalReportGenerator : public TestReportGenerator
{
public:
    ~XmlIncrementalReportGenerator() override;

    /// Leaves a file that holds something alone and takes the next free name.
    static Result create(const QString &path);

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    explicit XmlIncrementalReportGenerator(std::unique_ptr<ReportFile> file);

    void dumpElement(const XmlElement &element, WriteMode mode);

    std::unique_ptr<ReportFile> m_file;
    int m_indent = 0;
    RunWatch m_run;
    Iso8601Time m_times;
    // Kept for its memory.
    QByteArray m_text;
};

} // namespace Morvex
