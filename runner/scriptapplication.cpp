#include "runner/scriptapplication.h"

#include "qtbackend/applicationplugin.h"
#include "qtbackend/qtinspector.h"
#include "qtbackend/turneventloop.h"
#include "runner/scriptobject.h"
#include "runner/uicoverage.h"
#include "runner/windowsystem.h"
#include "shared/environment.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileInfo>
#include <QPluginLoader>

namespace Morvex {
namespace {

const int waitStepMs = 20;

} // namespace

ScriptApplication::ScriptApplication(const QStringList &searchDirs)
    : m_searchDirs(searchDirs)
{
    const QString prefix = QString::fromStdString(Environment::getVariable("MORVEX_PREFIX"));
    m_searchDirs += prefix + QLatin1String("/lib/applications");
}

ScriptApplication::~ScriptApplication()
{
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
    if (m_running)
        return QStringLiteral("an application is already running");
    const QString &name = command.constFirst();
    const QString path = pluginPath(name);
    if (path.isEmpty())
        return QStringLiteral("there is no application '%1' in %2")
            .arg(name, m_searchDirs.join(QLatin1String(", ")));
    prepare();
    // Never unloaded: the object model keeps descriptions of the application's classes.
    QPluginLoader loader(path);
    auto *plugin = qobject_cast<ApplicationPlugin *>(loader.instance());
    if (!plugin)
        return loader.isLoaded() ? QStringLiteral("'%1' is a plugin of another kind").arg(path)
                                 : loader.errorString();
    if (!m_inspector) {
        m_inspector = std::make_unique<QtInspector>();
        Inspector::install(m_inspector.get());
        startUsageCount();
    }
    const QString error = plugin->start(command.mid(1));
    if (error.isEmpty())
        m_running = plugin;
    return error;
}

void ScriptApplication::prepare()
{
    startWindowSystem();
}

void ScriptApplication::stop()
{
    if (!m_running)
        return;
    m_running->stop();
    m_running = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool ScriptApplication::waitUntilRunning(int timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (!m_running && timer.elapsed() < timeout)
        turnEventLoop(waitStepMs);
    return m_running;
}

QObject *ScriptApplication::find(const QString &name, int timeout)
{
    QString error;
    const SharedPtr<Object> found = object(name, timeout, &error);
    return new ScriptObject(name, found, error);
}

SharedPtr<Object> ScriptApplication::object(const QString &name, int timeout, QString *error) const
{
    QString reason = whyNotFindable();
    const SharedPtr<Object> found =
        reason.isEmpty() ? m_inspector->waitForObject(name, timeout, &reason) : SharedPtr<Object>();
    if (!found && m_running && name.startsWith(QLatin1Char(':')) && !m_missingObjectMap.isEmpty())
        reason += QStringLiteral(" The file '%1' does not exist.").arg(m_missingObjectMap);
    if (error)
        *error = reason;
    return found;
}

// Why nothing can be found; empty while an application runs.
QString ScriptApplication::whyNotFindable() const
{
    if (m_running)
        return {};
    return m_inspector ? QStringLiteral("the application has been stopped")
                       : QStringLiteral("no application was started");
}

QString ScriptApplication::pluginPath(const QString &name) const
{
    for (const QString &dir : m_searchDirs) {
        for (const char *suffix : {"", ".so"}) {
            const QString path = QDir(dir).absoluteFilePath(name + QLatin1String(suffix));
            if (QFileInfo(path).isFile())
                return path;
        }
    }
    return {};
}

} // namespace Morvex
