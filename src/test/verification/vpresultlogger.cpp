#include "test/verification/vpresultlogger.h"

#include "shared/system/clock.h"
#include "test/verification/vpimages.h"

#include <QImage>

namespace Morvex {
namespace {

std::vector<LineInfo> loggedStack(TestResult::ResultType type, const std::vector<LineInfo> &stack)
{
    const bool isFailure =
        type == TestResult::FATAL || type == TestResult::ERROR || type == TestResult::FAIL;
    return isFailure || stack.empty() ? stack : std::vector<LineInfo>{stack.front()};
}

QString tableMessage(bool isEqual, bool expectFail)
{
    if (isEqual)
        return expectFail ? QStringLiteral("Table Comparison of '%1' unexpectedly passed")
                          : QStringLiteral("Table Comparison of '%1' passed");
    return expectFail ? QStringLiteral("Table Comparison of '%1' expectedly failed")
                      : QStringLiteral("Table Comparison of '%1' failed");
}

} // namespace

VPResultLogger::VPTempEntry::VPTempEntry(const QString &name, const QString &text,
                                         const QString &moreText, TestResult::ResultType resultType,
                                         TestResult::VPType kind, const QFileInfo &file)
    : vpName(name)
    , message(text)
    , details(moreText)
    , type(resultType)
    , vpType(kind)
    , vpFile(file)
{
}

VPResultLogger::VPTempEntry::~VPTempEntry() = default;

void VPResultLogger::VPTempEntry::add(TestResult *result, const QDateTime &time,
                                      const std::vector<LineInfo> &stack, const QString &info) const
{
    result->addResultForVPFile(time, type, message, details, loggedStack(type, stack), vpName,
                               vpType, vpFile, info);
}

VPResultLogger::VPTempDiffEntry::VPTempDiffEntry(const VPTempEntry &entry,
                                                 const FList<TableDiff::Element> &diff)
    : VPTempEntry(entry.vpName, entry.message, entry.details, entry.type, entry.vpType,
                  entry.vpFile)
    , m_diff(diff)
{
}

void VPResultLogger::VPTempDiffEntry::add(TestResult *result, const QDateTime &time,
                                          const std::vector<LineInfo> &stack,
                                          const QString &info) const
{
    result->addResultForTableVPFile(time, type, message, details, loggedStack(type, stack), vpName,
                                    vpFile, info, m_diff);
}

VPResultLogger::VPResultLogger(TestResult *result, const std::vector<LineInfo> &stack,
                               const QString &info, const VerificationOptions &options,
                               RunnerInterface *runner)
    : m_result(result)
    , m_time(currentLocalTime())
    , m_stack(stack)
    , m_info(info)
    , m_options(options)
    , m_runner(runner)
{
}

VPResultLogger::~VPResultLogger()
{
    end();
}

void VPResultLogger::addResult(TestResult::ResultType type, const QString &message,
                               const QString &details, const QString &vpName,
                               TestResult::VPType vpType, const QFileInfo &vpFile)
{
    if (m_options.testFlag(VerificationOptions::SilentVerification) && type != TestResult::ERROR)
        return;
    m_entries.append(
        SharedPtr<VPTempEntry>(new VPTempEntry(vpName, message, details, type, vpType, vpFile)));
}

void VPResultLogger::addResult(const QString &objectName, const FList<TableDiff::Element> &diff,
                               const QString &vpName, const QFileInfo &vpFile, bool expectFail)
{
    if (m_options.testFlag(VerificationOptions::SilentVerification))
        return;
    const bool isEqual = diff.isEmpty();
    const VPTempEntry entry(
        vpName, tableMessage(isEqual, expectFail).arg(objectName), tableDetails(isEqual),
        TestResult::verificationType(isEqual, expectFail), TestResult::TABLE_VP, vpFile);
    m_entries.append(SharedPtr<VPTempEntry>(new VPTempDiffEntry(entry, diff)));
}

void VPResultLogger::deferDetails(const std::function<QString()> &makeDetails)
{
    m_makeDetails = makeDetails;
    m_incomplete = m_entries.isEmpty() ? SharedPtr<VPTempEntry>() : m_entries.constLast();
}

void VPResultLogger::clearResults()
{
    m_entries.clear();
    m_makeDetails = nullptr;
    m_incomplete = SharedPtr<VPTempEntry>();
}

void VPResultLogger::completeDetails()
{
    if (!m_makeDetails)
        return;
    const QString details = m_makeDetails();
    if (m_incomplete)
        m_incomplete->details += details;
    m_makeDetails = nullptr;
    m_incomplete = SharedPtr<VPTempEntry>();
}

void VPResultLogger::processResults()
{
    completeDetails();
    if (m_entries.isEmpty())
        return;
    start();
    for (const SharedPtr<VPTempEntry> &entry : qAsConst(m_entries)) {
        if (wantsDesktopPicture(m_options, entry->type))
            entry->message += logScreenshot(m_runner, entry->type, QImage());
        entry->add(m_result, m_time, m_stack, m_info);
    }
    m_lastMessage = m_entries.constLast()->message;
    m_lastDetails = m_entries.constLast()->details;
    m_entries.clear();
}

void VPResultLogger::start()
{
    if (!m_started)
        m_result->startVP();
    m_started = true;
}

void VPResultLogger::end()
{
    if (m_started)
        m_result->endVP();
    m_started = false;
}

QString tableDetails(bool isEqual)
{
    return isEqual ? QStringLiteral("Table contents appear to be equal.")
                   : QStringLiteral("Table contents do not match expectation.");
}

} // namespace Morvex
