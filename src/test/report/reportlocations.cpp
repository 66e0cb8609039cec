#include "test/report/reportlocations.h"

#include "test/reportgeneratorshared.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {
namespace {

const int maxRemembered = 1000;

} // namespace

ReportLocations::ReportLocations(TestReportGenerator::TestType type, const QString &resultDir)
    : m_type(type)
    , m_resultDir(resultDir)
{
}

void ReportLocations::update(const TestResult::Entry &entry)
{
    if (entry.type == TestResult::START || entry.type == TestResult::START_TEST_CASE)
        m_remembered.clear();
    setTestSuiteAndTestCasePath(m_type, entry, &m_suitePath, &m_casePath);
}

const std::string &ReportLocations::scriptFile(const QString &path)
{
    return uriOf(path);
}

const std::string &ReportLocations::verificationPoint(const TestResult::Entry &entry)
{
    return uriOf(entry.vpFile.filePath());
}

std::string ReportLocations::failedImage(const QString &path) const
{
    return failedImageURI(path, m_suitePath, m_casePath, m_resultDir);
}

std::string ReportLocations::attachment(const QString &path) const
{
    return attachmentURI(path, m_suitePath, m_casePath, m_resultDir);
}

// A file that is yet to come, as a verification point that is learned, may turn out to be a link; a
// relative path means another file after a change of the current directory.
const std::string &ReportLocations::uriOf(const QString &path)
{
    const auto known = m_remembered.constFind(path);
    if (known != m_remembered.constEnd() && (known->exists || !QFileInfo::exists(path)))
        return known->uri;
    const Location location{relativeURI(path, m_suitePath, m_casePath), QFileInfo::exists(path)};
    const bool hasRoom = known != m_remembered.constEnd() || m_remembered.size() < maxRemembered;
    if (hasRoom && QDir::isAbsolutePath(path))
        return m_remembered.insert(path, location)->uri;
    m_latest = location;
    return m_latest.uri;
}

} // namespace Morvex
