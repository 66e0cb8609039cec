#pragma once

#include "morvex_export.h"
#include "objectmodel/shared.h"
#include "objectmodel/sharedptr.h"
#include "test/testresult.h"
#include "test/verificationoptions.h"

#include <QList>

#include <functional>
#include <vector>

namespace Morvex {

class RunnerInterface;

/// Holds the results of an attempt back until it is clear that they count. All that is logged in
/// its life is one verification of the log.
class MORVEX_EXPORT VPResultLogger
{
public:
    /// A result on its way to the log.
    class MORVEX_EXPORT VPTempEntry : public Shared
    {
    public:
        VPTempEntry(const QString &vpName, const QString &message, const QString &details,
                    TestResult::ResultType type, TestResult::VPType vpType,
                    const QFileInfo &vpFile);
        ~VPTempEntry() override;

        /// Results that are not failures get the innermost frame of the stack alone.
        virtual void add(TestResult *result, const QDateTime &time,
                         const std::vector<LineInfo> &stack, const QString &info) const;

        QString vpName;
        QString message;
        QString details;
        TestResult::ResultType type;
        TestResult::VPType vpType;
        QFileInfo vpFile;
    };

    class MORVEX_EXPORT VPTempDiffEntry : public VPTempEntry
    {
    public:
        VPTempDiffEntry(const VPTempEntry &entry, const FList<TableDiff::Element> &diff);

        void add(TestResult *result, const QDateTime &time, const std::vector<LineInfo> &stack,
                 const QString &info) const override;

    private:
        FList<TableDiff::Element> m_diff;
    };

    /// @p result and @p runner are not owned. The time is taken here, for all results.
    VPResultLogger(TestResult *result, const std::vector<LineInfo> &stack, const QString &info,
                   const VerificationOptions &options, RunnerInterface *runner);
    ~VPResultLogger();

    VPResultLogger(const VPResultLogger &) = delete;
    VPResultLogger &operator=(const VPResultLogger &) = delete;

    void addResult(TestResult::ResultType type, const QString &message, const QString &details,
                   const QString &vpName, TestResult::VPType vpType, const QFileInfo &vpFile);
    /// The result of a comparison of tables: equal ones have an empty difference.
    void addResult(const QString &objectName, const FList<TableDiff::Element> &diff,
                   const QString &vpName, const QFileInfo &vpFile, bool expectFail);

    /// Makes the rest of the details of the result that was added last, and what it needs, once it
    /// is clear that it counts; also when the result itself is not logged.
    void deferDetails(const std::function<QString()> &makeDetails);

    void clearResults();
    /// Logs what was added and forgets it.
    void processResults();

    void start();
    void end();

    QString lastResultMessage() const { return m_lastMessage; }
    QString lastResultDetails() const { return m_lastDetails; }

private:
    void completeDetails();

    bool m_started = false;
    TestResult *m_result;
    QDateTime m_time;
    std::vector<LineInfo> m_stack;
    QString m_info;
    VerificationOptions m_options;
    RunnerInterface *m_runner;
    QString m_lastMessage;
    QString m_lastDetails;
    QList<SharedPtr<VPTempEntry>> m_entries;
    std::function<QString()> m_makeDetails;
    // Null when the result is not logged.
    SharedPtr<VPTempEntry> m_incomplete;
};

/// The details of a comparison of tables.
QString tableDetails(bool isEqual);

} // namespace Morvex
