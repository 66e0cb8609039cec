#include "runner/scriptrunner.h"

#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "remote/processfacts.h"
#include "remote/remotecontext.h"
#include "remote/remoteinspector.h"
#include "runner/applications.h"
#include "runner/processend.h"
#include "test/suite/applicationwords.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSysInfo>

#include <limits>

namespace Morvex {
namespace {

const int waitStepMs = 20;

const QString thisHost()
{
    return QStringLiteral("127.0.0.1");
}

// Whether it is this machine; else with an error.
bool isHere(const QString &host, QString *error)
{
    const bool isHere = host.isEmpty() || host == QLatin1String("localhost") ||
                        host == thisHost() || host == QSysInfo::machineHostName();
    if (!isHere)
        *error = QStringLiteral("applications run on this machine, not on '%1'").arg(host);
    return isHere;
}

bool isTrue(const SharedPtr<Object> &object, const char *name)
{
    const Class *objectClass = object->objectClass();
    const Property *property = objectClass ? objectClass->property(QLatin1String(name)) : nullptr;
    const SharedPtr<Object> value = property ? property->get(object) : SharedPtr<Object>();
    // What has no such property can't be hidden or disabled.
    return !property || (value && value->value().toBool());
}

bool isUsable(const SharedPtr<Object> &object, bool isReady)
{
    return object && object->objectClass() &&
           (!isReady || (isTrue(object, "visible") && isTrue(object, "enabled")));
}

Applications::Options optionsOf(const QMap<QString, QVariant> &options, int timeout)
{
    Applications::Options result;
    result.timeout = timeout;
    result.workingDirectory = options.value(QStringLiteral("cwd")).toString();
    const QVariantMap environment = options.value(QStringLiteral("environment")).toMap();
    for (auto it = environment.cbegin(); it != environment.cend(); ++it)
        result.variables += it.key() + QLatin1Char('=') + it->toString();
    return result;
}

} // namespace

ScriptRunner::ScriptRunner(TestResult *result, const QString &script, const QString &resultDir,
                           Applications *applications)
    : DummyRunnerInterface(result)
    , m_script(script)
    , m_resultDir(resultDir)
    , m_applications(applications)
{
}

// Null for none.
SharedPtr<ApplicationContext> ScriptRunner::contextOf(int id) const
{
    const std::shared_ptr<RemoteContext> remote = m_applications->context(id);
    if (!remote)
        return {};
    SharedPtr<ApplicationContext> context(new ApplicationContext);
    context->id = id;
    context->name = remote->name();
    context->host = thisHost();
    context->state = remote->isRunning() ? 1 : 0;
    context->startTime = remote->startTime();
    context->processId = remote->processId();
    return context;
}

std::shared_ptr<RemoteContext>
ScriptRunner::remoteContext(const SharedPtr<ApplicationContext> &context) const
{
    return context ? m_applications->context(context->id) : nullptr;
}

SharedPtr<ApplicationContext> ScriptRunner::startApplication(const QString &command,
                                                             const QString &host, int, int timeout,
                                                             QString *error)
{
    QString ownError;
    QString *reason = error ? error : &ownError;
    if (!isHere(host, reason))
        return {};
    Applications::Options options;
    options.timeout = timeout;
    return contextOf(m_applications->start(applicationWords(command), options, reason));
}

SharedPtr<ApplicationContext> ScriptRunner::attachToApplication(const QString &name,
                                                                const QString &host, int,
                                                                int timeout, QString *error)
{
    QString ownError;
    QString *reason = error ? error : &ownError;
    return isHere(host, reason) ? contextOf(m_applications->attach(name, timeout, reason))
                                : SharedPtr<ApplicationContext>();
}

SharedPtr<ApplicationContext> ScriptRunner::startLauncher(const QString &command,
                                                          const QString &host, int, int timeout,
                                                          const QMap<QString, QVariant> &options,
                                                          QString *error)
{
    QString ownError;
    QString *reason = error ? error : &ownError;
    if (!isHere(host, reason))
        return {};
    const QStringList words =
        applicationWords(command) + options.value(QStringLiteral("arguments")).toStringList();
    return contextOf(m_applications->startLauncher(words, optionsOf(options, timeout), reason));
}

void ScriptRunner::detachFromApplication(const SharedPtr<ApplicationContext> &context)
{
    if (context)
        m_applications->leave(context->id);
}

SharedPtr<ApplicationContext> ScriptRunner::waitForApplicationLaunch(int timeout, QString *error)
{
    const SharedPtr<ApplicationContext> context = contextOf(m_applications->waitForLaunch(timeout));
    if (!context && error)
        *error =
            QStringLiteral("no application was started within %1 seconds").arg(timeout / 1000.0);
    return context;
}

SharedPtr<ApplicationContext> ScriptRunner::defaultApplicationContext()
{
    return contextOf(m_applications->current());
}

SharedPtr<ApplicationContext> ScriptRunner::applicationContext(const QString &name)
{
    for (const SharedPtr<ApplicationContext> &context : applicationContextList()) {
        if (context->name == name)
            return context;
    }
    return {};
}

void ScriptRunner::setApplicationContext(const SharedPtr<ApplicationContext> &context)
{
    if (context)
        m_applications->setCurrent(context->id);
}

QList<SharedPtr<ApplicationContext>> ScriptRunner::applicationContextList()
{
    QList<SharedPtr<ApplicationContext>> contexts;
    for (const int id : m_applications->running())
        contexts += contextOf(id);
    return contexts;
}

quint64 ScriptRunner::usedMemory(const SharedPtr<ApplicationContext> &context)
{
    return ProcessFacts(processId(context)).usedMemory();
}

quint64 ScriptRunner::totalTime(const SharedPtr<ApplicationContext> &context)
{
    return ProcessFacts(processId(context)).totalTime();
}

QString ScriptRunner::environmentVariable(const SharedPtr<ApplicationContext> &context,
                                          const QString &name)
{
    return ProcessFacts(processId(context)).environmentVariable(name);
}

QString ScriptRunner::currentWorkingDirectory(const SharedPtr<ApplicationContext> &context)
{
    return ProcessFacts(processId(context)).workingDirectory();
}

QString ScriptRunner::hostForContext(const SharedPtr<ApplicationContext> &context)
{
    return remoteContext(context) ? thisHost() : QString();
}

bool ScriptRunner::isRunning(const SharedPtr<ApplicationContext> &context)
{
    const auto remote = remoteContext(context);
    return remote && remote->isRunning();
}

bool ScriptRunner::isFrozen(const SharedPtr<ApplicationContext> &context, int timeout)
{
    const auto remote = remoteContext(context);
    return remote && remote->isFrozen(timeout);
}

qint64 ScriptRunner::processId(const SharedPtr<ApplicationContext> &context)
{
    const auto remote = remoteContext(context);
    return remote ? remote->processId() : 0;
}

void ScriptRunner::snooze(double seconds)
{
    const double milliseconds = seconds * 1000;
    if (milliseconds > 0)
        pauseScript(static_cast<int>(qMin(milliseconds, double(std::numeric_limits<int>::max()))));
}

SharedPtr<Object> ScriptRunner::waitForObject(const QString &name, bool isReady, int timeout)
{
    QElapsedTimer timer;
    timer.start();
    const SharedPtr<Object> object = waitForObjectExists(name, false, timeout);
    const qint64 left = timeout - timer.elapsed();
    return object ? waitForObject(object, isReady, static_cast<int>(qMax<qint64>(left, 0)))
                  : object;
}

SharedPtr<Object> ScriptRunner::waitForObject(const SharedPtr<Object> &object, bool isReady,
                                              int timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (object && object->objectClass()) {
        if (isUsable(object, isReady))
            return object;
        if (timer.elapsed() >= timeout)
            break;
        pauseScript(waitStepMs);
    }
    return {};
}

SharedPtr<Object> ScriptRunner::waitForObjectExists(const QString &name, bool isReady, int timeout)
{
    if (isReady)
        return waitForObject(name, true, timeout);
    const std::shared_ptr<RemoteInspector> inspector = m_applications->inspector();
    return inspector ? inspector->waitForObject(name, timeout, nullptr) : SharedPtr<Object>();
}

SharedPtr<Object> ScriptRunner::waitForObjectItem(const QString &name,
                                                  const SharedPtr<Object> &object,
                                                  const QString &item, int timeout)
{
    return waitForItem(name, object, {item}, timeout);
}

SharedPtr<Object> ScriptRunner::waitForObjectItem(const QString &name,
                                                  const SharedPtr<Object> &object, int row,
                                                  int column, int timeout)
{
    return waitForItem(name, object, {row, column}, timeout);
}

SharedPtr<Object> ScriptRunner::waitForItem(const QString &name, SharedPtr<Object> object,
                                            const QVariantList &selector, int timeout)
{
    QElapsedTimer timer;
    timer.start();
    if (!object)
        object = waitForObjectExists(name, false, timeout);
    const std::shared_ptr<RemoteInspector> inspector = m_applications->inspectorOf(object);
    while (object && inspector) {
        QString error;
        const QVariantList arguments{object->id(), QVariant(selector)};
        if (inspector->callFunction(QStringLiteral("hasItem"), arguments, &error).toBool())
            return object;
        if (!error.isEmpty() || timer.elapsed() >= timeout)
            break;
        pauseScript(waitStepMs);
    }
    return {};
}

QString ScriptRunner::readStdout(const SharedPtr<ApplicationContext> &context)
{
    return context ? m_applications->standardOutput(context->id) : QString();
}

QString ScriptRunner::readStderr(const SharedPtr<ApplicationContext> &context)
{
    return context ? m_applications->standardError(context->id) : QString();
}

QString ScriptRunner::osName(const SharedPtr<ApplicationContext> &)
{
    return QStringLiteral("Linux");
}

QString ScriptRunner::testCaseName()
{
    return QFileInfo(m_script).dir().dirName();
}

QString ScriptRunner::testSuiteName()
{
    return QFileInfo(QFileInfo(m_script).path()).dir().dirName();
}

} // namespace Morvex
