#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"
#include "test/applicationcontext.h"
#include "test/testreportgenerator.h"

#include <QList>
#include <QMap>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

class QIODevice;

namespace Morvex {

class ObjectModelObserver;
class TestResult;

/// What the library knows of the runner that hosts it. All calls come from the thread of the test
/// script.
class MORVEX_EXPORT RunnerInterface
{
public:
    virtual ~RunnerInterface();

    // Start of applications. A null pointer comes back on failure; the error, which may be null,
    // then has a text.
    virtual SharedPtr<ApplicationContext> startApplication(const QString &command,
                                                           const QString &host, int port,
                                                           int timeout, QString *error) = 0;
    virtual SharedPtr<ApplicationContext> attachToApplication(const QString &name,
                                                              const QString &host, int port,
                                                              int timeout, QString *error) = 0;
    virtual SharedPtr<ApplicationContext> startLauncher(const QString &command, const QString &host,
                                                        int port, int timeout,
                                                        const QMap<QString, QVariant> &options,
                                                        QString *error) = 0;
    virtual void detachFromApplication(const SharedPtr<ApplicationContext> &context) = 0;
    virtual SharedPtr<ApplicationContext> waitForApplicationLaunch(int timeout, QString *error) = 0;

    // Contexts.
    virtual SharedPtr<ApplicationContext> defaultApplicationContext() = 0;
    virtual SharedPtr<ApplicationContext> applicationContext(const QString &name) = 0;
    virtual void setApplicationContext(const SharedPtr<ApplicationContext> &context) = 0;
    virtual QList<SharedPtr<ApplicationContext>> applicationContextList() = 0;

    // Facts about a context: bytes, milliseconds.
    virtual quint64 usedMemory(const SharedPtr<ApplicationContext> &context) = 0;
    virtual quint64 totalTime(const SharedPtr<ApplicationContext> &context) = 0;
    virtual QString environmentVariable(const SharedPtr<ApplicationContext> &context,
                                        const QString &name) = 0;
    virtual QString currentWorkingDirectory(const SharedPtr<ApplicationContext> &context) = 0;
    virtual QString hostForContext(const SharedPtr<ApplicationContext> &context) = 0;
    virtual int portForContext(const SharedPtr<ApplicationContext> &context) = 0;
    virtual bool isRunning(const SharedPtr<ApplicationContext> &context) = 0;
    virtual bool isFrozen(const SharedPtr<ApplicationContext> &context, int timeout) = 0;
    virtual qint64 processId(const SharedPtr<ApplicationContext> &context) = 0;

    // Waiting, up to a time in milliseconds except for snooze, which takes seconds. Null when what
    // is waited for does not come.
    virtual void snooze(double seconds) = 0;
    virtual SharedPtr<Object> waitForObject(const QString &name, bool isReady, int timeout) = 0;
    virtual SharedPtr<Object> waitForObject(const SharedPtr<Object> &object, bool isReady,
                                            int timeout) = 0;
    virtual SharedPtr<Object> waitForObjectExists(const QString &name, bool isReady,
                                                  int timeout) = 0;
    virtual SharedPtr<Object> waitForObjectItem(const QString &name,
                                                const SharedPtr<Object> &object,
                                                const QString &item, int timeout) = 0;
    virtual SharedPtr<Object> waitForObjectItem(const QString &name,
                                                const SharedPtr<Object> &object, int row,
                                                int column, int timeout) = 0;

    // Output of the application.
    virtual QString readStdout(const SharedPtr<ApplicationContext> &context) = 0;
    virtual QString readStderr(const SharedPtr<ApplicationContext> &context) = 0;
    virtual QString osName(const SharedPtr<ApplicationContext> &context) = 0;

    // Parts of an object, by its id.
    virtual bool objectHasComponents(int id) = 0;
    virtual QList<SharedPtr<Object>> fetchObjectComponents(int id) = 0;

    // The test in progress. The test case is named by the path of its script.
    virtual QString currentTestCase() = 0;
    virtual QString currentSettingsGroup() = 0;
    virtual QString currentDevice() = 0;

    // Input.
    virtual bool keyPress(const QString &keys, bool isPressed) = 0;
    virtual bool mousePress(const SharedPtr<Object> &object, int x, int y, int button,
                            int modifiers, int clicks, bool isPressed, bool isReleased) = 0;
    virtual bool highlightObject(const SharedPtr<Object> &object, int milliseconds) = 0;
    virtual void clearHighlight() = 0;

    // Video: where a recording of the screen comes from.
    virtual QIODeviceResult recordScreen(const SharedPtr<ApplicationContext> &context,
                                         QIODevice *target) = 0;

    // The connection to whoever started the runner.
    virtual void readDataFromSocket() = 0;
    virtual bool hasStdinData() = 0;

    // Names.
    virtual QString testCaseName() = 0;
    virtual QString testSuiteName() = 0;

    // Image lookup.
    virtual void setImageLookupFixTarget(int target) = 0;
    virtual int imageLookupFixTarget() = 0;

    // Object map.
    virtual bool loadObjectMap(const QString &fileName) = 0;

    // Results. An empty directory: the run keeps none.
    virtual QString resultDirectory() = 0;
    virtual void setResultDirectory(const QString &path) = 0;

    // Observer of the object model. Not owned.
    virtual void setObjectModelObserver(ObjectModelObserver *observer) = 0;
    virtual ObjectModelObserver *objectModelObserver() = 0;

    // Names and models.
    virtual QString convertObjectName(int contextId, const QString &name, int form) = 0;
    virtual bool applicationContextHasType(const QString &type, int contextId) = 0;
    virtual bool holdObjectModels() = 0;
    virtual void releaseObjectModels() = 0;

    // Filter data.
    virtual QStringList tags() = 0;
    virtual std::vector<unsigned int> &scenarioIndices() = 0;
    virtual bool ideModeEnabled() = 0;

    // Connections to servers, by number; negative on failure.
    virtual int connectToMorvexServer(const QString &host, int port, QString *error) = 0;
    virtual int connectToDefaultMorvexServer(QString *error) = 0;
    virtual int closeMorvexServerConnection(int connection, QString *error) = 0;

    // Facts about a server's machine.
    virtual QString getRemoteEnvironmentVariable(int connection, const QString &name,
                                                 QString *error) = 0;
    virtual QString getRemoteOsName(int connection, QString *error) = 0;

    // Commands on a server's machine.
    virtual QString executeCommand(int connection, const QList<QVariant> &command,
                                   const QString &directory,
                                   const QMap<QString, QVariant> &environment, int timeout,
                                   bool readStdout, bool readStderr, const QString &encoding,
                                   QString *error) = 0;
    virtual QStringList getRemoteDirectoryContent(int connection, const QString &path,
                                                  bool isRecursive, QString *error) = 0;
    virtual QVariant getRemotePathProperty(int connection, const QString &path,
                                           const QString &property, QString *error) = 0;

    // Files on a server's machine.
    virtual bool remotePathExists(int connection, const QString &path, QString *error) = 0;
    virtual bool remoteRenamePath(int connection, const QString &from, const QString &to,
                                  QString *error) = 0;
    virtual bool remoteCreatePath(int connection, const QString &path, QString *error) = 0;
    virtual bool remoteDeletePath(int connection, const QString &path, QString *error) = 0;
    virtual bool remoteCreateFile(int connection, const QString &path, const QByteArray &content,
                                  QString *error) = 0;
    virtual bool remoteDeleteFile(int connection, const QString &path, QString *error) = 0;
    virtual bool remoteCopyPath(int connection, const QString &from, const QString &to,
                                QString *error) = 0;
    virtual bool remoteUploadFile(int connection, const QString &local, const QString &remote,
                                  QString *error) = 0;
    virtual bool remoteDownloadFile(int connection, const QString &remote, const QString &local,
                                    QString *error) = 0;

    // Others.
    virtual int retryCount() = 0;
    virtual QRect objectGlobalBounds(const SharedPtr<Object> &object) = 0;
    virtual TestResult *currentTestResult() = 0;
    virtual void correctLookupErrorMsg(const QString &objectName, const QString &name,
                                       QString &message) = 0;
    virtual bool isVideoCaptureEnabled() = 0;
    virtual void setScriptedObjectMapPath(const QString &path) = 0;
    virtual QString scriptedObjectMapPath() = 0;
};

} // namespace Morvex
