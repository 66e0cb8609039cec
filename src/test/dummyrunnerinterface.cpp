#include "test/dummyrunnerinterface.h"

namespace Morvex {
namespace {

SharedPtr<ApplicationContext> newContext()
{
    return SharedPtr<ApplicationContext>(new ApplicationContext);
}

} // namespace

DummyRunnerInterface::DummyRunnerInterface(TestResult *result)
    : m_result(result)
{
}

DummyRunnerInterface::~DummyRunnerInterface() = default;

SharedPtr<ApplicationContext>
DummyRunnerInterface::startApplication(const QString &, const QString &, int, int, QString *)
{
    return newContext();
}

SharedPtr<ApplicationContext>
DummyRunnerInterface::attachToApplication(const QString &, const QString &, int, int, QString *)
{
    return newContext();
}

SharedPtr<ApplicationContext> DummyRunnerInterface::startLauncher(const QString &, const QString &,
                                                                  int, int,
                                                                  const QMap<QString, QVariant> &,
                                                                  QString *)
{
    return newContext();
}

void DummyRunnerInterface::detachFromApplication(const SharedPtr<ApplicationContext> &) {}

SharedPtr<ApplicationContext> DummyRunnerInterface::waitForApplicationLaunch(int, QString *)
{
    return newContext();
}

SharedPtr<ApplicationContext> DummyRunnerInterface::defaultApplicationContext()
{
    return newContext();
}

SharedPtr<ApplicationContext> DummyRunnerInterface::applicationContext(const QString &)
{
    return newContext();
}

void DummyRunnerInterface::setApplicationContext(const SharedPtr<ApplicationContext> &) {}

QList<SharedPtr<ApplicationContext>> DummyRunnerInterface::applicationContextList()
{
    return {};
}

quint64 DummyRunnerInterface::usedMemory(const SharedPtr<ApplicationContext> &)
{
    return 0;
}

quint64 DummyRunnerInterface::totalTime(const SharedPtr<ApplicationContext> &)
{
    return 0;
}

QString DummyRunnerInterface::environmentVariable(const SharedPtr<ApplicationContext> &,
                                                  const QString &)
{
    return {};
}

QString DummyRunnerInterface::currentWorkingDirectory(const SharedPtr<ApplicationContext> &)
{
    return {};
}

QString DummyRunnerInterface::hostForContext(const SharedPtr<ApplicationContext> &)
{
    return {};
}

int DummyRunnerInterface::portForContext(const SharedPtr<ApplicationContext> &)
{
    return 0;
}

bool DummyRunnerInterface::isRunning(const SharedPtr<ApplicationContext> &)
{
    return false;
}

bool DummyRunnerInterface::isFrozen(const SharedPtr<ApplicationContext> &, int)
{
    return false;
}

qint64 DummyRunnerInterface::processId(const SharedPtr<ApplicationContext> &)
{
    return 0;
}

void DummyRunnerInterface::snooze(double) {}

SharedPtr<Object> DummyRunnerInterface::waitForObject(const QString &, bool, int)
{
    return {};
}

SharedPtr<Object> DummyRunnerInterface::waitForObject(const SharedPtr<Object> &, bool, int)
{
    return {};
}

SharedPtr<Object> DummyRunnerInterface::waitForObjectExists(const QString &, bool, int)
{
    return {};
}

SharedPtr<Object> DummyRunnerInterface::waitForObjectItem(const QString &,
                                                          const SharedPtr<Object> &,
                                                          const QString &, int)
{
    return {};
}

SharedPtr<Object> DummyRunnerInterface::waitForObjectItem(const QString &,
                                                          const SharedPtr<Object> &, int, int, int)
{
    return {};
}

QString DummyRunnerInterface::readStdout(const SharedPtr<ApplicationContext> &)
{
    return {};
}

QString DummyRunnerInterface::readStderr(const SharedPtr<ApplicationContext> &)
{
    return {};
}

QString DummyRunnerInterface::osName(const SharedPtr<ApplicationContext> &)
{
    return {};
}

bool DummyRunnerInterface::objectHasComponents(int)
{
    return false;
}

QList<SharedPtr<Object>> DummyRunnerInterface::fetchObjectComponents(int)
{
    return {};
}

QString DummyRunnerInterface::currentTestCase()
{
    return {};
}

QString DummyRunnerInterface::currentSettingsGroup()
{
    return {};
}

QString DummyRunnerInterface::currentDevice()
{
    return {};
}

bool DummyRunnerInterface::keyPress(const QString &, bool)
{
    return false;
}

bool DummyRunnerInterface::mousePress(const SharedPtr<Object> &, int, int, int, int, int, bool,
                                      bool)
{
    return false;
}

bool DummyRunnerInterface::highlightObject(const SharedPtr<Object> &, int)
{
    return false;
}

void DummyRunnerInterface::clearHighlight() {}

QIODeviceResult DummyRunnerInterface::recordScreen(const SharedPtr<ApplicationContext> &,
                                                   QIODevice *)
{
    return {nullptr, QStringLiteral("Not implemented in dummy runner")};
}

void DummyRunnerInterface::readDataFromSocket() {}

bool DummyRunnerInterface::hasStdinData()
{
    return false;
}

QString DummyRunnerInterface::testCaseName()
{
    return {};
}

QString DummyRunnerInterface::testSuiteName()
{
    return {};
}

void DummyRunnerInterface::setImageLookupFixTarget(int) {}

int DummyRunnerInterface::imageLookupFixTarget()
{
    return 0;
}

bool DummyRunnerInterface::loadObjectMap(const QString &)
{
    return false;
}

QString DummyRunnerInterface::resultDirectory()
{
    return {};
}

void DummyRunnerInterface::setResultDirectory(const QString &) {}

void DummyRunnerInterface::setObjectModelObserver(ObjectModelObserver *) {}

ObjectModelObserver *DummyRunnerInterface::objectModelObserver()
{
    return nullptr;
}

QString DummyRunnerInterface::convertObjectName(int, const QString &, int)
{
    return {};
}

bool DummyRunnerInterface::applicationContextHasType(const QString &, int)
{
    return false;
}

bool DummyRunnerInterface::holdObjectModels()
{
    return false;
}

void DummyRunnerInterface::releaseObjectModels() {}

QStringList DummyRunnerInterface::tags()
{
    return {};
}

std::vector<unsigned int> &DummyRunnerInterface::scenarioIndices()
{
    return m_scenarioIndices;
}

bool DummyRunnerInterface::ideModeEnabled()
{
    return false;
}

int DummyRunnerInterface::connectToMorvexServer(const QString &, int, QString *)
{
    return -1;
}

int DummyRunnerInterface::connectToDefaultMorvexServer(QString *)
{
    return -1;
}

int DummyRunnerInterface::closeMorvexServerConnection(int, QString *)
{
    return -1;
}

QString DummyRunnerInterface::getRemoteEnvironmentVariable(int, const QString &, QString *)
{
    return {};
}

QString DummyRunnerInterface::getRemoteOsName(int, QString *)
{
    return {};
}

QString DummyRunnerInterface::executeCommand(int, const QList<QVariant> &, const QString &,
                                             const QMap<QString, QVariant> &, int, bool, bool,
                                             const QString &, QString *)
{
    return {};
}

QStringList DummyRunnerInterface::getRemoteDirectoryContent(int, const QString &, bool, QString *)
{
    return {};
}

QVariant DummyRunnerInterface::getRemotePathProperty(int, const QString &, const QString &,
                                                     QString *)
{
    return {};
}

bool DummyRunnerInterface::remotePathExists(int, const QString &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteRenamePath(int, const QString &, const QString &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteCreatePath(int, const QString &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteDeletePath(int, const QString &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteCreateFile(int, const QString &, const QByteArray &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteDeleteFile(int, const QString &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteCopyPath(int, const QString &, const QString &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteUploadFile(int, const QString &, const QString &, QString *)
{
    return false;
}

bool DummyRunnerInterface::remoteDownloadFile(int, const QString &, const QString &, QString *)
{
    return false;
}

int DummyRunnerInterface::retryCount()
{
    return 0;
}

QRect DummyRunnerInterface::objectGlobalBounds(const SharedPtr<Object> &)
{
    return {};
}

TestResult *DummyRunnerInterface::currentTestResult()
{
    return m_result;
}

void DummyRunnerInterface::correctLookupErrorMsg(const QString &, const QString &, QString &) {}

bool DummyRunnerInterface::isVideoCaptureEnabled()
{
    return false;
}

void DummyRunnerInterface::setScriptedObjectMapPath(const QString &) {}

QString DummyRunnerInterface::scriptedObjectMapPath()
{
    return {};
}

} // namespace Morvex
