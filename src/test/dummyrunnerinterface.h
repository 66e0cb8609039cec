#pragma once

#include "morvex_export.h"
#include "test/runnerinterface.h"

namespace Morvex {

/// A runner without an application: each operation answers at once with nothing, a negative number
/// or a new empty context, and nothing that is passed in is kept.
class MORVEX_EXPORT DummyRunnerInterface : public RunnerInterface
{
public:
    /// @p result is not owned.
    explicit DummyRunnerInterface(TestResult *result);
    ~DummyRunnerInterface() override;

    SharedPtr<ApplicationContext> startApplication(const QString &command, const QString &host,
                                                   int port, int timeout, QString *error) override;
    SharedPtr<ApplicationContext> attachToApplication(const QString &name, const QString &host,
                                                      int port, int timeout,
                                                      QString *error) override;
    SharedPtr<ApplicationContext> startLauncher(const QString &command, const QString &host,
                                                int port, int timeout,
                                                const QMap<QString, QVariant> &options,
                                                QString *error) override;
    void detachFromApplication(const SharedPtr<ApplicationContext> &context) override;
    SharedPtr<ApplicationContext> waitForApplicationLaunch(int timeout, QString *error) override;

    SharedPtr<ApplicationContext> defaultApplicationContext() override;
    SharedPtr<ApplicationContext> applicationContext(const QString &name) override;
    void setApplicationContext(const SharedPtr<ApplicationContext> &context) override;
    QList<SharedPtr<ApplicationContext>> applicationContextList() override;

    quint64 usedMemory(const SharedPtr<ApplicationContext> &context) override;
    quint64 totalTime(const SharedPtr<ApplicationContext> &context) override;
    QString environmentVariable(const SharedPtr<ApplicationContext> &context,
                                const QString &name) override;
    QString currentWorkingDirectory(const SharedPtr<ApplicationContext> &context) override;
    QString hostForContext(const SharedPtr<ApplicationContext> &context) override;
    int portForContext(const SharedPtr<ApplicationContext> &context) override;
    bool isRunning(const SharedPtr<ApplicationContext> &context) override;
    bool isFrozen(const SharedPtr<ApplicationContext> &context, int timeout) override;
    qint64 processId(const SharedPtr<ApplicationContext> &context) override;

    void snooze(double seconds) override;
    SharedPtr<Object> waitForObject(const QString &name, bool isReady, int timeout) override;
    SharedPtr<Object> waitForObject(const SharedPtr<Object> &object, bool isReady,
                                    int timeout) override;
    SharedPtr<Object> waitForObjectExists(const QString &name, bool isReady, int timeout) override;
    SharedPtr<Object> waitForObjectItem(const QString &name, const SharedPtr<Object> &object,
                                        const QString &item, int timeout) override;
    SharedPtr<Object> waitForObjectItem(const QString &name, const SharedPtr<Object> &object,
                                        int row, int column, int timeout) override;

    QString readStdout(const SharedPtr<ApplicationContext> &context) override;
    QString readStderr(const SharedPtr<ApplicationContext> &context) override;
    QString osName(const SharedPtr<ApplicationContext> &context) override;

    bool objectHasComponents(int id) override;
    QList<SharedPtr<Object>> fetchObjectComponents(int id) override;

    QString currentTestCase() override;
    QString currentSettingsGroup() override;
    QString currentDevice() override;

    bool keyPress(const QString &keys, bool isPressed) override;
    bool mousePress(const SharedPtr<Object> &object, int x, int y, int button, int modifiers,
                    int clicks, bool isPressed, bool isReleased) override;
    bool highlightObject(const SharedPtr<Object> &object, int milliseconds) override;
    void clearHighlight() override;

    QIODeviceResult recordScreen(const SharedPtr<ApplicationContext> &context,
                                 QIODevice *target) override;

    void readDataFromSocket() override;
    bool hasStdinData() override;

    QString testCaseName() override;
    QString testSuiteName() override;

    void setImageLookupFixTarget(int target) override;
    int imageLookupFixTarget() override;

    bool loadObjectMap(const QString &fileName) override;

    QString resultDirectory() override;
    void setResultDirectory(const QString &path) override;

    void setObjectModelObserver(ObjectModelObserver *observer) override;
    ObjectModelObserver *objectModelObserver() override;

    QString convertObjectName(int contextId, const QString &name, int form) override;
    bool applicationContextHasType(const QString &type, int contextId) override;
    bool holdObjectModels() override;
    void releaseObjectModels() override;

    QStringList tags() override;
    std::vector<unsigned int> &scenarioIndices() override;
    bool ideModeEnabled() override;

    int connectToMorvexServer(const QString &host, int port, QString *error) override;
    int connectToDefaultMorvexServer(QString *error) override;
    int closeMorvexServerConnection(int connection, QString *error) override;

    QString getRemoteEnvironmentVariable(int connection, const QString &name,
                                         QString *error) override;
    QString getRemoteOsName(int connection, QString *error) override;

    QString executeCommand(int connection, const QList<QVariant> &command, const QString &directory,
                           const QMap<QString, QVariant> &environment, int timeout, bool readStdout,
                           bool readStderr, const QString &encoding, QString *error) override;
    QStringList getRemoteDirectoryContent(int connection, const QString &path, bool isRecursive,
                                          QString *error) override;
    QVariant getRemotePathProperty(int connection, const QString &path, const QString &property,
                                   QString *error) override;

    bool remotePathExists(int connection, const QString &path, QString *error) override;
    bool remoteRenamePath(int connection, const QString &from, const QString &to,
                          QString *error) override;
    bool remoteCreatePath(int connection, const QString &path, QString *error) override;
    bool remoteDeletePath(int connection, const QString &path, QString *error) override;
    bool remoteCreateFile(int connection, const QString &path, const QByteArray &content,
                          QString *error) override;
    bool remoteDeleteFile(int connection, const QString &path, QString *error) override;
    bool remoteCopyPath(int connection, const QString &from, const QString &to,
                        QString *error) override;
    bool remoteUploadFile(int connection, const QString &local, const QString &remote,
                          QString *error) override;
    bool remoteDownloadFile(int connection, const QString &remote, const QString &local,
                            QString *error) override;

    int retryCount() override;
    QRect objectGlobalBounds(const SharedPtr<Object> &object) override;
    TestResult *currentTestResult() override;
    void correctLookupErrorMsg(const QString &objectName, const QString &name,
                               QString &message) override;
    bool isVideoCaptureEnabled() override;
    void setScriptedObjectMapPath(const QString &path) override;
    QString scriptedObjectMapPath() override;

private:
    TestResult *m_result;
    std::vector<unsigned int> m_scenarioIndices;
};

} // namespace Morvex
