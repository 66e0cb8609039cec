#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

#include <QString>
#include <QStringList>

#include <deque>
#include <vector>

class QIODevice;

namespace Morvex {

/// A new device, which the caller owns, or a non-empty error text.
struct QIODeviceResult
{
    QIODevice *device = nullptr;
    QString error;
};

/// Base of all report formats. Counts the results, closes sections that the script left open, keeps
/// the entries that retry analysis needs, and passes a well-nested stream of entries on to
/// doHandleEntry.
///
/// A format is called in this order: doHandleEntry for START; any number of entries, in which each
/// START_TEST_CASE and START_SECTION has its end; doHandleEntry for END; generateSummary, unless
/// MORVEX_NOREPORTSUMMARY is set; the destructor. A run that its owner gives up ends in the same
/// way, see abortRun. A format opens its file in its static create, so that a bad path stops a run
/// before it starts; a write error later on must not disturb the run.
class MORVEX_EXPORT TestReportGenerator
{
public:
    /// What a START entry stands for.
    enum TestType { TEST_SUITE, TEST_CASE };

    /// A new generator, which the caller owns, or a non-empty error text.
    struct Result
    {
        TestReportGenerator *generator = nullptr;
        QString error;
    };

    /// An expected failure is among the passes, an unexpected pass among the fails.
    struct Counters
    {
        int tests = 0;
        int fails = 0;
        int passes = 0;
        int testcases = 0;
        int errors = 0;
        int fatals = 0;
        int warnings = 0;
        int xfails = 0;
        int xpasses = 0;
    };

    TestReportGenerator() = default;
    virtual ~TestReportGenerator();

    TestReportGenerator(const TestReportGenerator &) = delete;
    TestReportGenerator &operator=(const TestReportGenerator &) = delete;

    virtual void generateSummary() = 0;

    /// A write-only device that takes the video of @p path.
    virtual QIODeviceResult videoOutput(const QString &path);

    /// An entry that comes while another one is being handled, as from the event loop that a format
    /// turns, is kept and handled after it.
    void handleEntry(const TestResult::Entry &entry);

    /// Ends a run that its owner gives up between its first entry and its END: an ERROR that says
    /// so, since a report that breaks off must not look like a run that passed, then all ends and
    /// the summary. Does nothing at any other time.
    void abortRun();

    /// False when MORVEX_NOREPORTSUMMARY is set: then generateSummary is not called.
    static bool isSummaryWanted();

    /// By "tests", "fails", "passes", "testcases", "errors", "fatals", "warnings", "xfails" and
    /// "xpasses"; -1 for any other key. An expected failure is among the passes, an unexpected
    /// pass among the fails.
    int resultCount(const QString &key) const;
    /// -1 for a type that is not counted.
    int resultCount(TestResult::ResultType type) const;

    /// Starts of test cases and repeatable sections, and failures, of the whole run in order. Only
    /// what retry analysis needs is kept of each: time, type, info and retry.
    const std::vector<TestResult::Entry> &retainedEntries() const;

protected:
    /// What abortRun does. A run is left open for a reader who sees by itself that it broke off.
    enum AbortedRun { IsEnded, IsLeftOpen };

    explicit TestReportGenerator(AbortedRun abortedRun);

    virtual void doHandleEntry(const TestResult::Entry &entry) = 0;

    /// Whether the entry that is being handled is one that closes sections or says so, which the
    /// frame has made.
    bool isAutomatic() const { return m_isAutomatic; }

private:
    /// The part of a run that has begun and not ended.
    struct OpenPart
    {
        bool isOpen = false;
        QString name;
    };

    void handleNow(const TestResult::Entry &entry);
    /// What is kept of an entry until somebody asks for it: with several reports nobody asks most
    /// of them.
    struct Kept
    {
        QDateTime time;
        QString info;
        TestResult::ResultType type;
        int retry;
    };

    void updateOpenParts(const TestResult::Entry &entry);
    bool updateSections(const TestResult::Entry &entry);
    void closeDanglingSections();
    void closeDanglingUserSections(const TestResult::Entry &entry);
    void createEndSectionEntry(const QString &info);
    void createSectionWarning(const LineInfo &line, const QString &info);
    void handleAutomatic(const TestResult::Entry &entry);

    mutable std::vector<TestResult::Entry> m_retained;
    Counters m_counters;
    QStringList m_sections;
    OpenPart m_run;
    OpenPart m_testCase;
    AbortedRun m_abortedRun = IsEnded;
    mutable std::deque<Kept> m_kept;
    bool m_isAutomatic = false;
    bool m_isHandling = false;
    std::deque<TestResult::Entry> m_deferred;
};

} // namespace Morvex
