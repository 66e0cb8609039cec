#include "runner/scriptapplication.h"

#include "remote/remoteapplication.h"
#include "remote/remoteinspector.h"
#include "runner/environmentfile.h"
#include "runner/processend.h"
#include "runner/scriptobject.h"
#include "runner/uicoverage.h"
#include "shared/environment.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJSEngine>
#include <QStandardPaths>

namespace Morvex {
namespace {

const int waitStepMs = 20;

QString installationPrefix()
{
    return QString::fromStdString(Environment::getVariable("MORVEX_PREFIX"));
}

} // namespace

ScriptApplication::ScriptApplication(const QStringList &searchDirs)
    : m_searchDirs(searchDirs)
{
    m_searchDirs += installationPrefix() + QLatin1String("/lib/applications");
}

ScriptApplication::~ScriptApplication()
{
    m_beforeStop = nullptr;
    stop();
}

QString ScriptApplication::loadObjectMap(const QString &fileName)
{
    // A suite names the file of its map also when it has none.
    if (!QFileInfo::exists(fileName)) {
        m_missingObjectMap = fileName;
        return {};
    }
    const QString error = m_objectMap.load(fileName);
    ObjectMap::install(&m_objectMap);
    return error;
}

QString ScriptApplication::start(const QStringList &command)
{
    if (command.isEmpty())
        return QStringLiteral("no application was named");
    // One that has ended by itself may be started again.
    if (m_program && !m_program->isRunning())
        stop();
    if (isRunning())
        return QStringLiteral("an application is already running");
    const QString &name = command.constFirst();
    const QString path = pathOf(name);
    if (path.isEmpty())
        return QStringLiteral("there is no application '%1' in %2, and no program of that name in "
                              "PATH")
            .arg(name, m_searchDirs.join(QLatin1String(", ")));
    if (!QFileInfo(path).isExecutable())
        return QStringLiteral("'%1' is not a program that may be run").arg(path);
    const QString error = startProgram(QStringList{path} + command.mid(1));
    if (!error.isEmpty())
        return error;
    m_wasStarted = true;
    Inspector::install(inspector());
    startUsageCount();
    return {};
}

QString ScriptApplication::startProgram(const QStringList &command)
{
    RemoteApplication::Start start;
    start.command = command;
    start.prefix = installationPrefix();
    start.keptVariables = setVariables();
    // No more: the script would go on within its own call.
    start.idle = serveTermination;
    QString error;
    m_program = RemoteApplication::start(start, &error);
    return error;
}

Inspector *ScriptApplication::inspector() const
{
    return m_program ? m_program->inspector() : nullptr;
}

void ScriptApplication::stop()
{
    if (m_program && m_beforeStop)
        m_beforeStop();
    m_program.reset();
}

bool ScriptApplication::waitUntilRunning(int timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (!isRunning() && timer.elapsed() < timeout)
        pauseScript(waitStepMs);
    return isRunning();
}

QObject *ScriptApplication::find(const QString &name, int timeout)
{
    QString error;
    const SharedPtr<Object> found = object(name, timeout, &error);
    if (!found && isRunning() && !inspector()->failure().isEmpty())
        qjsEngine(this)->throwError(inspector()->failure());
    return new ScriptObject(name, found, error);
}

QJSValue ScriptApplication::findAll(const QString &name)
{
    QString error = whyNotFindable();
    QVariant found;
    if (error.isEmpty()) {
        // Takes the object map with it.
        inspector()->findObject(name, nullptr);
        found = inspector()->callFunction(QStringLiteral("findAll"), {name}, &error);
    }
    if (!error.isEmpty())
        qjsEngine(this)->throwError(error);
    return ScriptObject::listOf(qjsEngine(this), found.toList());
}

void ScriptApplication::pause(int milliseconds) const
{
    pauseScript(milliseconds);
}

SharedPtr<Object> ScriptApplication::object(const QString &name, int timeout, QString *error) const
{
    QString reason = whyNotFindable();
    const SharedPtr<Object> found =
        reason.isEmpty() ? inspector()->waitForObject(name, timeout, &reason) : SharedPtr<Object>();
    if (!found && isRunning() && name.startsWith(QLatin1Char(':')) && !m_missingObjectMap.isEmpty())
        reason += QStringLiteral(" The file '%1' does not exist.").arg(m_missingObjectMap);
    if (error)
        *error = reason;
    return found;
}

// Why nothing can be found; empty while an application runs.
QString ScriptApplication::whyNotFindable() const
{
    if (isRunning())
        return {};
    return m_wasStarted ? QStringLiteral("the application has been stopped")
                        : QStringLiteral("no application was started");
}

// Empty when there is none.
QString ScriptApplication::pathOf(const QString &name) const
{
    for (const QString &dir : m_searchDirs) {
        const QString path = QDir(dir).absoluteFilePath(name);
        if (QFileInfo(path).isFile())
            return path;
    }
    return name.contains(QLatin1Char('/')) ? QString() : QStandardPaths::findExecutable(name);
}

} // namespace Morvex
