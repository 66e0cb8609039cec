#pragma once

#include "test/dummyrunnerinterface.h"

namespace Morvex {

class Applications;
class RemoteContext;

/// This runner as the library sees it. Applications run on this machine: a host that is not empty
/// has to be one of its names. The id of an application context is its number in Applications, and
/// the state is 1 while it runs, else 0.
class ScriptRunner : public DummyRunnerInterface
{
public:
    /// @p applications is not owned.
    ScriptRunner(TestResult *result, const QString &script, const QString &resultDir,
                 Applications *applications);

    SharedPtr<ApplicationContext> startApplication(const QString &command, const QString &host,
                                                   int port, int timeout, QString *error) override;
    /// To a process of an application that was started, by the file name of its program.
    SharedPtr<ApplicationContext> attachToApplication(const QString &name, const QString &host,
                                                      int port, int timeout,
                                                      QString *error) override;
    /// The options: "arguments", a list of words that follow the command, "cwd", and "environment",
    /// a map.
    SharedPtr<ApplicationContext> startLauncher(const QString &command, const QString &host,
                                                int port, int timeout,
                                                const QMap<QString, QVariant> &options,
                                                QString *error) override;
    /// It runs on, but names are no longer looked up in it.
    void detachFromApplication(const SharedPtr<ApplicationContext> &context) override;
    SharedPtr<ApplicationContext> waitForApplicationLaunch(int timeout, QString *error) override;

    SharedPtr<ApplicationContext> defaultApplicationContext() override;
    /// By the name of its program; the first one that runs.
    SharedPtr<ApplicationContext> applicationContext(const QString &name) override;
    void setApplicationContext(const SharedPtr<ApplicationContext> &context) override;
    QList<SharedPtr<ApplicationContext>> applicationContextList() override;

    quint64 usedMemory(const SharedPtr<ApplicationContext> &context) override;
    quint64 totalTime(const SharedPtr<ApplicationContext> &context) override;
    QString environmentVariable(const SharedPtr<ApplicationContext> &context,
                                const QString &name) override;
    QString currentWorkingDirectory(const SharedPtr<ApplicationContext> &context) override;
    QString hostForContext(const SharedPtr<ApplicationContext> &context) override;
    bool isRunning(const SharedPtr<ApplicationContext> &context) override;
    bool isFrozen(const SharedPtr<ApplicationContext> &context, int timeout) override;
    qint64 processId(const SharedPtr<ApplicationContext> &context) override;

    void snooze(double seconds) override;
    /// An object is ready when it is visible and enabled.
    SharedPtr<Object> waitForObject(const QString &name, bool isReady, int timeout) override;
    SharedPtr<Object> waitForObject(const SharedPtr<Object> &object, bool isReady,
                                    int timeout) override;
    SharedPtr<Object> waitForObjectExists(const QString &name, bool isReady, int timeout) override;
    /// The object, which is looked up by its name if it is null, once it has the item.
    SharedPtr<Object> waitForObjectItem(const QString &name, const SharedPtr<Object> &object,
                                        const QString &item, int timeout) override;
    SharedPtr<Object> waitForObjectItem(const QString &name, const SharedPtr<Object> &object,
                                        int row, int column, int timeout) override;

    QString readStdout(const SharedPtr<ApplicationContext> &context) override;
    QString readStderr(const SharedPtr<ApplicationContext> &context) override;
    QString osName(const SharedPtr<ApplicationContext> &context) override;

    QString currentTestCase() override { return m_script; }
    QString testCaseName() override;
    QString testSuiteName() override;
    QString resultDirectory() override { return m_resultDir; }
    void setResultDirectory(const QString &path) override { m_resultDir = path; }

private:
    SharedPtr<ApplicationContext> contextOf(int id) const;
    std::shared_ptr<RemoteContext>
    remoteContext(const SharedPtr<ApplicationContext> &context) const;
    SharedPtr<Object> waitForItem(const QString &name, SharedPtr<Object> object,
                                  const QVariantList &selector, int timeout);

    QString m_script;
    QString m_resultDir;
    Applications *m_applications;
};

} // namespace Morvex
