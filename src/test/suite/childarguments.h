#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

struct RecordOptions;
struct RunOptions;
class TestSuite;

/// The command lines of the children that run and record the test cases of a suite.
class ChildArguments
{
public:
    /// @p suite has to outlive this object.
    explicit ChildArguments(const TestSuite &suite);

    /// @p retryOption is how often the child itself may repeat; 0 leaves it out.
    QStringList forAttempt(const QString &testCase, const RunOptions &options,
                           int retryOption) const;
    QStringList forRecording(const QString &testCase, const RecordOptions &options) const;

private:
    QStringList server(const QString &host, int port, const QString &testCase) const;
    QStringList wrappers() const;
    QStringList envVarFile() const;
    QStringList envVars(const QStringList &assignments) const;
    QStringList objectMap() const;
    QStringList cwd() const;
    QStringList hooks() const;
    QStringList launcher() const;
    QStringList launcherArguments() const;
    QStringList version() const;
    QStringList application() const;

    const TestSuite &m_suite;
};

} // namespace Morvex
