#include "test/report/reportlocations.h"

#include "test/reportgeneratorshared.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {
namespace {

const int maxRemembered = 1000;

// A file that is yet to come, as a verification point that is learned, may turn out to be a link; a
// relative path means another file after a change of the current directory.
bool canBeRemembered(const QString &path)
{
    return QDir::isAbsolutePath(path) && QFileInfo::exists(path);
}

} // namespace

ReportLocations::ReportLocations(TestReportGenerator::TestType type, const QString &resultDir)
    : m_type(type)
    , m_resultDir(resultDir)
{
}

void ReportLocations::update(const TestResult::Entry &entry)
{
    if (entry.type == TestResult::START)
        m_remembered.clear();
    setTestSuiteAndTestCasePath(m_type, entry, &m_suitePath, &m_casePath);
}

std::string ReportLocations::scriptFile(const QString &path)
{
    return rememberedURI(path);
}

std::string ReportLocations::verificationPoint(const TestResult::Entry &entry)
{
    return rememberedURI(entry.vpFile.filePath());
}

std::string ReportLocations::failedImage(const QString &path) const
{
    return failedImageURI(path, m_suitePath, m_casePath, m_resultDir);
}

std::string ReportLocations::attachment(const QString &path) const
{
    return attachmentURI(path, m_suitePath, m_casePath, m_resultDir);
}

std::string ReportLocations::rememberedURI(const QString &path)
{
    const auto known = m_remembered.constFind(path);
    if (known != m_remembered.constEnd())
        return known.value();
    std::string uri = relativeURI(path, m_suitePath, m_casePath);
    if (m_remembered.size() < maxRemembered && canBeRemembered(path))
        m_remembered.insert(path, uri);
    return uri;
}

} // namespace Morvex
