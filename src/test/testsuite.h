#pragma once

#include "morvex_export.h"
#include "shared/confparser.h"

#include <QDir>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

#include <memory>
#include <string>
#include <vector>

namespace Morvex {

class Cancellation;
class TestResult;

/// A test suite directory: its settings, the values that the command line puts over them, and the
/// run of its test cases. The files are read once, by the constructor.
class MORVEX_EXPORT TestSuite
{
public:
    /// An empty @p settingsGroup and "Default" stand for none. A group that the suite does not know
    /// ends the process with status -1 and a text on standard error.
    TestSuite(const QDir &dir, const QString &settingsGroup);

    QDir dir() const { return m_dir; }

    /// With an error each setting has its default; whether the suite is run is up to the caller.
    bool hasConfigLoadError() const { return !m_configLoadError.isEmpty(); }
    QString configLoadErrorMsg() const { return m_configLoadError; }

    /// An empty and an absolute name come back unchanged.
    QString absoluteSuiteFilePath(const QString &name) const;

    void setApplicationLauncher(const QString &launcher);
    void setApplicationLauncherArgs(const QStringList &arguments);
    void setAutOverride(const QString &aut);
    void setEnvVarFileName(const QString &fileName);
    void setScriptArguments(const QStringList &arguments);
    /// Kept for the owner; nothing here reads it back.
    void setScriptedObjectMapPath(const QString &path);
    /// These test cases are reported as skipped instead of being run.
    void setSkippedTestCases(const QStringList &testCases);
    /// Tag expressions, all of which have to hold; see allFilterByArgs.
    void setTags(const QStringList &tags);
    /// The run repeats test cases that failed in an earlier one; its log says so.
    void setRerun(bool isRerun);
    /// Ends a run early when it is requested; not owned, may be null.
    void setCancellation(Cancellation *cancellation);
    /// Called when all test cases have run, just before the log is closed.
    void setBeforeEnd(const std::function<void()> &beforeEnd) { m_beforeEnd = beforeEnd; }

    /// Empty for none.
    QString settingsGroup() const { return m_settingsGroup; }
    QStringList scriptArguments() const { return m_scriptArguments; }
    QStringList skippedTestCases() const { return m_skippedTestCases; }
    QStringList tags() const { return m_tags; }
    bool isRerun() const { return m_isRerun; }
    Cancellation *cancellation() const { return m_cancellation; }
    /// May be empty.
    std::function<void()> beforeEnd() const { return m_beforeEnd; }

    QString summary() const { return m_summary; }
    QString description() const { return m_description; }
    QMap<QString, QString> testSettingsValues() const { return m_testSettings; }
    QMap<QString, QString> passwords() const { return m_passwords; }

    /// At least 1.
    int version() const;
    bool implicitAutStart() const;
    /// A directory, "@app" for that of the application, or "@server" for that of the server.
    QString cwd() const;
    QString objectMap() const;
    /// 0 for multi-property names, 1 for hierarchical ones.
    int namingScheme() const;
    QStringList wrappers() const;
    QString defaultLanguage() const;
    QString envVarFileName() const;
    /// "CLASSPATH=..." for the environment of the application.
    QString classPathEnvironment() const;
    bool useWhiteList() const;
    /// How many runs a web report keeps, as it is written; empty for all.
    QString keptRuns() const;
    /// How many pictures of failures an attempt makes, as it is written; may be empty.
    QString failureScreenshots() const;
    /// The time that a test case may take, as it is written; empty when nothing is.
    QString timeout() const;
    QString aut() const;
    /// The directory with what the home of an application has at first; empty for none.
    QString applicationHome() const;
    /// How long a call may wait for an answer of the application, in seconds, as it is written.
    QString callTimeout() const;
    QString applicationLauncher() const;
    QStringList applicationLauncherArgs() const;
    bool hookSubProcesses() const;

    /// The tags of a test case in the order of its file. On an error they are empty and
    /// @p errorMessage is set; it stays as it is when there is no file.
    std::vector<std::string> getTestCaseTags(const QString &testCaseName,
                                             QString *errorMessage) const;

    /// A null string for a language that is not known.
    static QString extensionForLanguage(const QString &language);

    /// All test case directories: those that TEST_CASES names first, in its order.
    QStringList discoverTestCases() const;

    /// The order of a random run; 0 keeps the order as it is.
    static QStringList shuffled(QStringList testCases, unsigned int randomSeed);

    /// The test cases that the tags let through, in order. On a bad tag expression or an
    /// unreadable file of tags the list is empty and @p error is set.
    QStringList selectedByTags(const QStringList &testCases, QString *error) const;

    /// Whether the test case is behaviour driven.
    bool hasFeatureFile(const QString &testCase) const;

    /// Runs the test cases, all of them when @p testCases is empty, each in a child process, and
    /// logs the run in @p result. With a bad tag expression nothing is logged, and on an unreadable
    /// file of tags the log stays open; both are reported on standard error. A timeout of 0 seconds
    /// is none. Needs an event dispatcher on the calling thread.
    void run(const QString &host, int port, TestResult *result, const QStringList &testCases,
             const QString &resultDir, double snoozeFactor, unsigned int timeoutSeconds,
             bool stopOnFail, unsigned int retryCount, unsigned int randomSeed,
             const QStringList &envVars, bool interactive);

    /// One attempt. False only when it was cancelled.
    bool runTestCase(const QString &testCase, const QString &host, int port, TestResult *result,
                     const QString &resultDir, double snoozeFactor, unsigned int timeoutSeconds,
                     int retriesLeft, int retryOption, const QStringList &envVars,
                     bool interactive);

    /// Starts a child that records a test case, and does not wait for it.
    void record(bool disableEventCompression, bool useWaitFor, bool useScriptedObjectMap,
                const QString &testCase, const QStringList &testData, const QString &host, int port,
                const QStringList &envVars);

    bool videoCaptureEnabled = false;

private:
    void parseConfig();
    void mapWrappers();
    void checkSettingsGroup(const QString &group) const;

    QDir m_dir;
    Config m_config;
    QStringList m_skippedTestCases;
    QString m_settingsGroup;
    QString m_applicationLauncherOverride;
    QStringList m_applicationLauncherArgsOverride;
    QString m_autOverride;
    QString m_envVarFileNameOverride;
    QStringList m_scriptArguments;
    QStringList m_tags;
    bool m_isRerun = false;
    QString m_summary;
    QString m_description;
    QMap<QString, QString> m_testSettings;
    QMap<QString, QString> m_passwords;
    QString m_configLoadError;
    QString m_scriptedObjectMapPath;
    Cancellation *m_cancellation = nullptr;
    std::function<void()> m_beforeEnd;
};

} // namespace Morvex
