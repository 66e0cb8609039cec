#include "test/testreportgenerator.h"

#include "shared/environment.h"
#include "test/report/attempts.h"
#include "test/report/countertable.h"
#include "test/report/resultentries.h"
#include "test/report/resultkinds.h"
#include "test/report/resultlabels.h"
#include "test/report/sectionkind.h"

#include <QFile>

#include <memory>
#include <utility>

namespace Morvex {
namespace {

// An entry of the frame's own, which belongs to no verification.
TestResult::Entry ownEntry(TestResult::ResultType type, const QString &message,
                           const QString &details = QString())
{
    TestResult::Entry entry = makeEntry(type, message, details);
    entry.vpCounter = 0;
    return entry;
}

} // namespace

TestReportGenerator::TestReportGenerator(AbortedRun abortedRun)
    : m_abortedRun(abortedRun)
{
}

TestReportGenerator::~TestReportGenerator() = default;

QIODeviceResult TestReportGenerator::videoOutput(const QString &path)
{
    auto file = std::make_unique<QFile>(path);
    // The text is fixed as it is spelled.
    if (!file->open(QIODevice::WriteOnly))
        return {nullptr,
                QStringLiteral("Fialed opening file '%1: '%2'").arg(path, file->errorString())};
    return {file.release(), QString()};
}

void TestReportGenerator::handleEntry(const TestResult::Entry &entry)
{
    if (entry.type < TestResult::START || entry.type >= TestResult::NONE)
        return;
    if (m_isHandling) {
        m_deferred.push_back(entry);
        return;
    }
    m_isHandling = true;
    handleNow(entry);
    while (!m_deferred.empty()) {
        const TestResult::Entry deferred = std::move(m_deferred.front());
        m_deferred.pop_front();
        handleNow(deferred);
    }
    m_isHandling = false;
}

void TestReportGenerator::handleNow(const TestResult::Entry &entry)
{
    updateOpenParts(entry);
    countResult(m_counters, entry.type);
    if (!updateSections(entry))
        return;
    if (isAttemptStart(entry) || isFailure(entry.type))
        m_kept.push_back({entry.time, entry.info, entry.type, entry.retry});
    doHandleEntry(entry);
}

void TestReportGenerator::updateOpenParts(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::START:
        m_run = {true, entry.name};
        break;
    case TestResult::START_TEST_CASE:
        m_testCase = {true, entry.info};
        break;
    case TestResult::END:
        m_run = {};
        m_testCase = {};
        break;
    case TestResult::END_TEST_CASE:
        m_testCase = {};
        break;
    default:
        break;
    }
}

void TestReportGenerator::abortRun()
{
    if (!m_run.isOpen || m_abortedRun == IsLeftOpen)
        return;
    handleEntry(
        ownEntry(TestResult::ERROR, QStringLiteral("Run aborted"),
                 QStringLiteral("The run was aborted before its end. This report holds what was "
                                "logged up to then.")));
    if (m_testCase.isOpen) {
        TestResult::Entry end = ownEntry(TestResult::END_TEST_CASE, endMessage(m_testCase.name),
                                         endDetails(m_testCase.name));
        end.info = m_testCase.name;
        handleEntry(end);
    }
    TestResult::Entry end =
        ownEntry(TestResult::END, endMessage(m_run.name), endDetails(m_run.name));
    end.name = m_run.name;
    handleEntry(end);
    if (isSummaryWanted())
        generateSummary();
}

bool TestReportGenerator::isSummaryWanted()
{
    return Environment::getVariable("MORVEX_NOREPORTSUMMARY").empty();
}

// False when the entry is the end of a section that is not open, which no format may see.
bool TestReportGenerator::updateSections(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::END:
    case TestResult::START_TEST_CASE:
    case TestResult::END_TEST_CASE:
        closeDanglingSections();
        return true;
    case TestResult::START_SECTION:
        closeDanglingUserSections(entry);
        m_sections.append(entry.info);
        return true;
    case TestResult::END_SECTION:
        closeDanglingUserSections(entry);
        if (m_sections.isEmpty() || m_sections.constLast() != entry.info)
            return false;
        m_sections.removeLast();
        return true;
    default:
        return true;
    }
}

// Without the texts, which would make a run with many failures as large as its log.
const std::vector<TestResult::Entry> &TestReportGenerator::retainedEntries() const
{
    for (; !m_kept.empty(); m_kept.pop_front()) {
        const Kept &kept = m_kept.front();
        TestResult::Entry entry;
        entry.time = kept.time;
        entry.type = kept.type;
        entry.info = kept.info;
        entry.retry = kept.retry;
        m_retained.push_back(std::move(entry));
    }
    return m_retained;
}

int TestReportGenerator::resultCount(const QString &key) const
{
    for (const CounterRow &row : counterTable()) {
        if (key == row.key)
            return m_counters.*row.member;
    }
    return -1;
}

int TestReportGenerator::resultCount(TestResult::ResultType type) const
{
    for (const CounterRow &row : counterTable()) {
        if (type == row.own && type != TestResult::NONE)
            return m_counters.*row.member;
    }
    return -1;
}

void TestReportGenerator::closeDanglingSections()
{
    while (!m_sections.isEmpty())
        createEndSectionEntry(m_sections.takeLast());
}

// A section of the script must not cross the structure of a behaviour-driven test.
void TestReportGenerator::closeDanglingUserSections(const TestResult::Entry &entry)
{
    if (entry.info == SectionKind::userSection)
        return;
    bool closedAny = false;
    while (!m_sections.isEmpty() && m_sections.constLast() == SectionKind::userSection) {
        m_sections.removeLast();
        createEndSectionEntry(SectionKind::userSection);
        closedAny = true;
    }
    if (closedAny)
        createSectionWarning(entry.line, entry.info);
}

void TestReportGenerator::createEndSectionEntry(const QString &info)
{
    TestResult::Entry entry =
        ownEntry(TestResult::END_SECTION, QStringLiteral("auto-closed dangling section"));
    entry.info = info;
    handleAutomatic(entry);
}

void TestReportGenerator::createSectionWarning(const LineInfo &line, const QString &info)
{
    TestResult::Entry entry =
        ownEntry(TestResult::WARNING,
                 info + QStringLiteral(
                            " cannot be closed/opened inside a section. Sections have been closed "
                            "automatically."));
    entry.line = line;
    handleAutomatic(entry);
}

// Past the counters and the sections.
void TestReportGenerator::handleAutomatic(const TestResult::Entry &entry)
{
    m_isAutomatic = true;
    doHandleEntry(entry);
    m_isAutomatic = false;
}

} // namespace Morvex
