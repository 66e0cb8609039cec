#pragma once

#include "test/multireportgenerator.h"

namespace Morvex {

/// For a report beside one that is an archive: what is in the result directory of that one, which
/// is removed at the end of the run, is named by its place in the archive.
class ArchivedPlaces : public MultiReportGenerator
{
public:
    /// Takes ownership of @p report. The paths are absolute.
    ArchivedPlaces(TestReportGenerator *report, const QString &resultDir, const QString &archive);

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    const QString m_resultDir;
    const QString m_archive;
};

} // namespace Morvex
