#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

namespace MorvexTest {

struct RunnerOutput
{
    /// The status of the exit; -1 when a signal ended the process.
    int status;
    QByteArray standardOutput;
    QByteArray standardError;
};

/// A line of the console report, split at its tabs.
struct ConsoleLine
{
    QString type;
    /// With the place before the message.
    QString left;
    QString right;
};

/// Runs the real morvexrunner of the build tree on a suite in a temporary directory, with settings
/// of its own.
class RunnerProcess
{
public:
    RunnerProcess();

    QString suitePath() const;
    void addTestCase(const QString &name, const QByteArray &script);
    void addFile(const QString &name, const QByteArray &content);

    /// Options with the suite directory after them.
    RunnerOutput runSuite(const QStringList &options);
    RunnerOutput run(const QStringList &arguments, const QString &workingDir = {});

    /// The report of a run on standard output.
    static std::vector<ConsoleLine> report(const RunnerOutput &output);
    /// Lines "TYPE left|right", places and blanks at the end left out.
    static QStringList resultsOf(const RunnerOutput &output);
    /// The names after START_TEST_CASE.
    static QStringList startsOf(const RunnerOutput &output);

    static QString program();

    QProcessEnvironment environment;

private:
    QTemporaryDir m_dir;
};

} // namespace MorvexTest
