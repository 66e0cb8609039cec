#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QHash>
#include <QString>

#include <string>

namespace Morvex {

/// The URIs of one report: knows the directories that they are relative to. Remembers those of
/// files up to the next test case, since a script logs thousands of entries from a few files and
/// each real path costs a walk through the file system.
class MORVEX_EXPORT ReportLocations
{
public:
    /// @p resultDir may be empty; see failedImageURI.
    ReportLocations(TestReportGenerator::TestType type, const QString &resultDir);

    /// To be called with each entry, before the URIs of that entry are asked for.
    void update(const TestResult::Entry &entry);

    /// Valid until the next call, as is that of a verification point.
    const std::string &scriptFile(const QString &path);
    const std::string &verificationPoint(const TestResult::Entry &entry);
    std::string failedImage(const QString &path) const;
    std::string attachment(const QString &path) const;

private:
    struct Location
    {
        std::string uri;
        bool exists;
    };

    const std::string &uriOf(const QString &path);

    TestReportGenerator::TestType m_type;
    QString m_resultDir;
    QString m_suitePath;
    QString m_casePath;
    QHash<QString, Location> m_remembered;
    // Of a file that is not remembered.
    Location m_latest;
};

} // namespace Morvex
