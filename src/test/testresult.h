#pragma once

#include "morvex_export.h"
#include "objectmodel/flist.h"
#include "test/tablediff.h"

#include <QDateTime>
#include <QFileInfo>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QDir;

namespace Morvex {

class TestReportGenerator;

/// A place in a script.
class MORVEX_EXPORT LineInfo
{
public:
    LineInfo() = default;
    LineInfo(const QString &fileName, int lineNumber);

    QString fileName() const { return m_fileName; }
    int lineNumber() const { return m_lineNumber; }

    /// Line 0 is valid, a negative line or an empty file name is not.
    bool isValid() const { return !m_fileName.isEmpty() && m_lineNumber >= 0; }

    /// "file:line", empty when not valid.
    QString toString() const;

    friend bool operator==(const LineInfo &a, const LineInfo &b)
    {
        return a.m_lineNumber == b.m_lineNumber && a.m_fileName == b.m_fileName;
    }
    friend bool operator!=(const LineInfo &a, const LineInfo &b) { return !(a == b); }

private:
    QString m_fileName;
    int m_lineNumber = -1;
};

/// The one log of a test run. Stamps each entry, guards the order of the run and hands the entry to
/// its report generator, which counts and writes it. Used from one thread.
class MORVEX_EXPORT TestResult
{
public:
    // The numbers travel between processes and index the table of names.
    enum ResultType : int {
        START,
        END,
        START_TEST_CASE,
        END_TEST_CASE,
        START_SECTION,
        END_SECTION,
        SKIP_SECTION,
        LOG,
        FATAL,
        ERROR,
        PASS,
        FAIL,
        XFAIL,
        XPASS,
        WARNING,
        ATTACHMENT,
        STARTVIDEOCAPTURE,
        ENDVIDEOCAPTURE,
        NONE
    };

    /// The kind of verification that a result comes from. NO_VP stands for a check in the script.
    enum VPType : int { NO_VP, PROPERTY_VP, TABLE_VP, SCREENSHOT_VP, VISUAL_VP };

    enum AttachmentType : int {
        NO_ATTACHMENT = -1,
        UICOVERAGE_ATTACHMENT,
        FILE_ATTACHMENT,
        SCREENSHOT_ATTACHMENT
    };

    struct MORVEX_EXPORT Entry
    {
        /// A default QFileInfo, shared: making one of its own costs each entry dearly.
        static const QFileInfo &noFile();

        QDateTime time;
        ResultType type = NONE;
        QString message;
        QString details;
        /// The innermost frame; may be set without a stack.
        LineInfo line;
        /// Innermost frame first.
        std::vector<LineInfo> stack;
        /// The kind of a section, the name of a test case, or a free word of a verifier.
        QString info;
        /// The verification that this entry belongs to, from 1; 0 outside of verifications.
        int vpCounter = -1;
        QString name;
        FList<TableDiff::Element> tableDiff;
        QString vpName;
        VPType vpType = NO_VP;
        QFileInfo vpFile = noFile();
        QString summary;
        QString description;
        /// Attempts that remain after this one; negative when no retry applies.
        int retry = -1;
        AttachmentType attachmentType = NO_ATTACHMENT;
        QString attachmentUri;
    };

    /// What a comparison of two values gives: whether they are equal, and the text that says so.
    struct Comparison
    {
        bool equal;
        QString details;
    };

    /// Takes ownership of @p generator. Without one each entry is dropped with a warning.
    explicit TestResult(TestReportGenerator *generator = nullptr);
    /// A run that has not ended is aborted; see TestReportGenerator::abortRun.
    ~TestResult();

    TestResult(const TestResult &) = delete;
    TestResult &operator=(const TestResult &) = delete;

    TestReportGenerator *reportGenerator() const;

    /// Aborts a run that the present generator has open, deletes that generator and takes ownership
    /// of @p generator.
    void setReportGenerator(TestReportGenerator *generator);

    /// @p observer is called with each entry that is processed, after the flags of the run are set
    /// and before the generator sees it.
    void setObserver(std::function<void(const Entry &)> observer);

    bool isStarted() const;
    bool isComplete() const;
    /// False before the first test case ended, and within each test case.
    bool isTestCaseComplete() const;
    /// A FATAL, ERROR or FAIL since the last start of a test case. An XPASS does not count here.
    bool currentTestHasFailure() const;
    bool lastScenarioHasError() const;
    void clearLastScenarioError();

    /// Needs a report generator; see TestReportGenerator::resultCount for the keys.
    int count(const QString &key) const;
    /// -1 without a report generator and for types that are not counted.
    int resultCount(ResultType type) const;
    /// Counts each XPASS twice: among the failures and by itself.
    int failureCount() const;
    /// Needs a report generator.
    bool hasFailure() const;

    void start(const QString &name, const QDir &dir, const QString &summary,
               const QString &description);
    void start(const QString &name, const QString &summary, const QString &description);
    void completed();
    void startTestCase(const QString &name, const QDir &dir, const QString &summary,
                       const QString &description);
    void startTestCase(const QString &name, const QString &summary, const QString &description);
    void completedTestCase(const QString &name);

    void addResult(const QDateTime &time, ResultType type, const QString &message,
                   const QString &details, const std::vector<LineInfo> &stack,
                   const QString &info = QString(), int retry = -1);
    void addResult(const QDateTime &time, ResultType type, const QString &message,
                   const QString &details, const LineInfo &line, const QString &info = QString(),
                   int retry = -1);
    void addResult(ResultType type, const QString &message, const QString &details = QString(),
                   const LineInfo &line = LineInfo(), const QString &info = QString(),
                   int retry = -1);
    void addError(const QString &message, const QString &details,
                  const std::vector<LineInfo> &stack);

    static Comparison compare(const QString &expected, const QString &actual);
    static Comparison compare(int expected, int actual);
    /// Logs PASS or FAIL; true for PASS.
    bool addComparison(const QString &message, const QString &expected, const QString &actual,
                       const LineInfo &line, const QString &info);
    bool addComparison(const QString &message, int expected, int actual, const LineInfo &line,
                       const QString &info);

    void addAttachment(AttachmentType type, const QString &message, const QString &uri,
                       const std::vector<LineInfo> &stack);
    void addStartVideo(const QString &message, const QString &uri,
                       const std::vector<LineInfo> &stack);
    void addEndVideo(const QString &message, const QString &uri,
                     const std::vector<LineInfo> &stack);

    void addResultForVPFile(const QDateTime &time, ResultType type, const QString &message,
                            const QString &details, const std::vector<LineInfo> &stack,
                            const QString &vpName, VPType vpType, const QFileInfo &vpFile,
                            const QString &info);
    void addResultForTableVPFile(const QDateTime &time, ResultType type, const QString &message,
                                 const QString &details, const std::vector<LineInfo> &stack,
                                 const QString &vpName, const QFileInfo &vpFile,
                                 const QString &info, const FList<TableDiff::Element> &diff);

    /// Stamps the entry with the current verification and the run's name. An entry before the
    /// start, or a second start, ends the process: the caller is wrong. An entry after the end is
    /// dropped with a warning.
    void addEntry(Entry entry);

    /// The way in for entries of another process: no checks, no stamping.
    void processEntry(const Entry &entry);

    void startSection(const QString &title, const QString &description, const LineInfo &line);
    /// An error text, empty on success.
    [[nodiscard]] QString endSection(const LineInfo &line);

    /// All entries up to endVP carry the number of this verification.
    void startVP();
    void endVP();

    /// The type of a check that was or was not expected to fail.
    static ResultType verificationType(bool passed, bool expectFail);
    /// NONE when nothing matches. Blanks around the text don't matter, its case does.
    static ResultType stringToResult(const QString &text);
    /// Empty for NONE.
    static QString resultToString(ResultType type);

    /// Whether all failures are in attempts that a later retry replaced.
    bool isSuccessfulRetry() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Morvex
