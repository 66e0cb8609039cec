#include "test/testresult.h"

#include "shared/system/clock.h"
#include "test/report/attempts.h"
#include "test/report/resultentries.h"
#include "test/report/resultlabels.h"
#include "test/report/runstate.h"
#include "test/report/sectionkind.h"
#include "test/testreportgenerator.h"

#include <QDir>

#include <deque>
#include <utility>

namespace Morvex {

using Entry = TestResult::Entry;

LineInfo::LineInfo(const QString &fileName, int lineNumber)
    : m_fileName(fileName)
    , m_lineNumber(lineNumber)
{
}

QString LineInfo::toString() const
{
    return isValid() ? m_fileName + QLatin1Char(':') + QString::number(m_lineNumber) : QString();
}

struct TestResult::Private
{
    std::unique_ptr<TestReportGenerator> generator;
    std::function<void(const Entry &)> observer;
    QString name;
    int vpCounter = 0;
    bool inVerification = false;
    RunState state;
    std::deque<std::pair<QString, QString>> sections;

    void replaceGenerator(TestReportGenerator *replacement);
    // What addEntry does, on the entry itself.
    void add(TestResult &result, Entry &entry);
};

void TestResult::Private::replaceGenerator(TestReportGenerator *replacement)
{
    if (generator)
        generator->abortRun();
    generator.reset(replacement);
}

const QFileInfo &TestResult::Entry::noFile()
{
    static const QFileInfo file;
    return file;
}

TestResult::TestResult(TestReportGenerator *generator)
    : d(std::make_unique<Private>())
{
    d->generator.reset(generator);
}

TestResult::~TestResult()
{
    d->replaceGenerator(nullptr);
}

TestReportGenerator *TestResult::reportGenerator() const
{
    return d->generator.get();
}

void TestResult::setReportGenerator(TestReportGenerator *generator)
{
    d->replaceGenerator(generator);
}

void TestResult::setObserver(std::function<void(const Entry &)> observer)
{
    d->observer = std::move(observer);
}

bool TestResult::isStarted() const
{
    return d->state.isStarted;
}

bool TestResult::isComplete() const
{
    return d->state.isComplete;
}

bool TestResult::isTestCaseComplete() const
{
    return d->state.isTestCaseComplete;
}

bool TestResult::currentTestHasFailure() const
{
    return d->state.currentTestHasFailure;
}

bool TestResult::lastScenarioHasError() const
{
    return d->state.lastScenarioHasError;
}

void TestResult::clearLastScenarioError()
{
    d->state.lastScenarioHasError = false;
}

int TestResult::count(const QString &key) const
{
    return d->generator->resultCount(key);
}

int TestResult::resultCount(ResultType type) const
{
    return d->generator ? d->generator->resultCount(type) : -1;
}

int TestResult::failureCount() const
{
    return resultCount(FAIL) + resultCount(XPASS) + resultCount(ERROR) + resultCount(FATAL);
}

bool TestResult::hasFailure() const
{
    return count(QStringLiteral("errors")) != 0 || count(QStringLiteral("fatals")) != 0 ||
           count(QStringLiteral("fails")) != 0;
}

void TestResult::start(const QString &name, const QDir &dir, const QString &summary,
                       const QString &description)
{
    d->name = name;
    Entry entry = makeStartEntry(START, name, dir, summary, description);
    d->add(*this, entry);
}

void TestResult::start(const QString &name, const QString &summary, const QString &description)
{
    start(name, QDir::current(), summary, description);
}

void TestResult::completed()
{
    addResult(END, endMessage(d->name), endDetails(d->name));
}

void TestResult::startTestCase(const QString &name, const QDir &dir, const QString &summary,
                               const QString &description)
{
    Entry entry = makeStartEntry(START_TEST_CASE, name, dir, summary, description);
    entry.info = name;
    d->add(*this, entry);
}

void TestResult::startTestCase(const QString &name, const QString &summary,
                               const QString &description)
{
    startTestCase(name, QDir::current(), summary, description);
}

void TestResult::completedTestCase(const QString &name)
{
    Entry entry = makeEntry(END_TEST_CASE, endMessage(name), endDetails(name));
    entry.info = name;
    d->add(*this, entry);
}

void TestResult::addResult(const QDateTime &time, ResultType type, const QString &message,
                           const QString &details, const std::vector<LineInfo> &stack,
                           const QString &info, int retry)
{
    Entry entry = makeEntry(time, type, message, details);
    setStack(entry, stack);
    entry.info = info;
    entry.retry = retry;
    d->add(*this, entry);
}

void TestResult::addResult(const QDateTime &time, ResultType type, const QString &message,
                           const QString &details, const LineInfo &line, const QString &info,
                           int retry)
{
    Entry entry = makeEntry(time, type, message, details);
    setLine(entry, line);
    entry.info = info;
    entry.retry = retry;
    d->add(*this, entry);
}

void TestResult::addResult(ResultType type, const QString &message, const QString &details,
                           const LineInfo &line, const QString &info, int retry)
{
    addResult(currentLocalTime(), type, message, details, line, info, retry);
}

void TestResult::addError(const QString &message, const QString &details,
                          const std::vector<LineInfo> &stack)
{
    Entry entry = makeEntry(ERROR, message, details);
    setStack(entry, stack);
    d->add(*this, entry);
}

TestResult::Comparison TestResult::compare(const QString &expected, const QString &actual)
{
    if (expected == actual)
        return {true, QStringLiteral("Got expected '%1'.").arg(expected)};
    // The form of arg with two texts: one that has %2 in it can't be taken for a place.
    return {false, QStringLiteral("Expected '%1', got '%2'.").arg(expected, actual)};
}

TestResult::Comparison TestResult::compare(int expected, int actual)
{
    if (expected == actual)
        return {true, QStringLiteral("Got expected %1.").arg(expected)};
    return {false, QStringLiteral("Expected %1, got %2.").arg(expected).arg(actual)};
}

bool TestResult::addComparison(const QString &message, const QString &expected,
                               const QString &actual, const LineInfo &line, const QString &info)
{
    const Comparison comparison = compare(expected, actual);
    addResult(comparison.equal ? PASS : FAIL, message, comparison.details, line, info);
    return comparison.equal;
}

bool TestResult::addComparison(const QString &message, int expected, int actual,
                               const LineInfo &line, const QString &info)
{
    const Comparison comparison = compare(expected, actual);
    addResult(comparison.equal ? PASS : FAIL, message, comparison.details, line, info);
    return comparison.equal;
}

void TestResult::addAttachment(AttachmentType type, const QString &message, const QString &uri,
                               const std::vector<LineInfo> &stack)
{
    Entry entry = makeAttachmentEntry(ATTACHMENT, type, message, uri, stack);
    d->add(*this, entry);
}

void TestResult::addStartVideo(const QString &message, const QString &uri,
                               const std::vector<LineInfo> &stack)
{
    Entry entry = makeAttachmentEntry(STARTVIDEOCAPTURE, FILE_ATTACHMENT, message, uri, stack);
    d->add(*this, entry);
}

void TestResult::addEndVideo(const QString &message, const QString &uri,
                             const std::vector<LineInfo> &stack)
{
    Entry entry = makeAttachmentEntry(ENDVIDEOCAPTURE, FILE_ATTACHMENT, message, uri, stack);
    d->add(*this, entry);
}

void TestResult::addResultForVPFile(const QDateTime &time, ResultType type, const QString &message,
                                    const QString &details, const std::vector<LineInfo> &stack,
                                    const QString &vpName, VPType vpType, const QFileInfo &vpFile,
                                    const QString &info)
{
    Entry entry = makeVPEntry(time, type, message, details, stack, vpName, vpType, vpFile, info);
    d->add(*this, entry);
}

void TestResult::addResultForTableVPFile(const QDateTime &time, ResultType type,
                                         const QString &message, const QString &details,
                                         const std::vector<LineInfo> &stack, const QString &vpName,
                                         const QFileInfo &vpFile, const QString &info,
                                         const FList<TableDiff::Element> &diff)
{
    Entry entry = makeVPEntry(time, type, message, details, stack, vpName, TABLE_VP, vpFile, info);
    entry.tableDiff = diff;
    d->add(*this, entry);
}

void TestResult::addEntry(Entry entry)
{
    d->add(*this, entry);
}

void TestResult::Private::add(TestResult &result, Entry &entry)
{
    if (!generator) {
        qWarning("Cannot add entry to test result without valid report generator.");
        return;
    }
    if (state.isComplete) {
        qWarning("Cannot add entry to test result which is completed already, type %d with message "
                 "'%s'",
                 entry.type, qUtf8Printable(entry.message));
        return;
    }
    if (entry.type != START && !state.isStarted)
        qFatal("TestResult::addEntry: first result has to be of type Start. Got type %d with "
               "message '%s'",
               entry.type, qUtf8Printable(entry.message));
    if (entry.type == START && state.isStarted)
        qFatal("TestResult::addEntry: already started");
    // Out of reach as long as the warning above comes first.
    if (entry.type == END && state.isComplete)
        qFatal("TestResult::addEntry: already completed");
    entry.vpCounter = inVerification ? vpCounter : 0;
    entry.name = name;
    result.processEntry(entry);
}

void TestResult::processEntry(const Entry &entry)
{
    d->state.update(entry.type);
    if (d->observer)
        d->observer(entry);
    if (!d->generator)
        return;
    d->generator->handleEntry(entry);
    if (entry.type == END && TestReportGenerator::isSummaryWanted())
        d->generator->generateSummary();
}

void TestResult::startSection(const QString &title, const QString &description,
                              const LineInfo &line)
{
    addResult(START_SECTION, title, description, line, SectionKind::userSection);
    d->sections.emplace_back(title, description);
}

QString TestResult::endSection(const LineInfo &line)
{
    if (d->sections.empty())
        return QStringLiteral("there are no started result sections");
    const auto [title, description] = d->sections.back();
    d->sections.pop_back();
    addResult(END_SECTION, title, description, line, SectionKind::userSection);
    return {};
}

void TestResult::startVP()
{
    ++d->vpCounter;
    d->inVerification = true;
}

void TestResult::endVP()
{
    d->inVerification = false;
}

TestResult::ResultType TestResult::verificationType(bool passed, bool expectFail)
{
    if (expectFail)
        return passed ? XPASS : XFAIL;
    return passed ? PASS : FAIL;
}

TestResult::ResultType TestResult::stringToResult(const QString &text)
{
    const QString name = text.trimmed();
    int type = 0;
    while (type < NONE && name != resultName(static_cast<ResultType>(type)))
        ++type;
    return static_cast<ResultType>(type);
}

QString TestResult::resultToString(ResultType type)
{
    return resultName(type);
}

bool TestResult::isSuccessfulRetry() const
{
    return d->generator && Morvex::isSuccessfulRetry(d->generator->retainedEntries());
}

} // namespace Morvex
