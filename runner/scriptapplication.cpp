#include "runner/scriptapplication.h"

#include "remote/remotecontext.h"
#include "remote/remoteinspector.h"
#include "runner/applications.h"
#include "runner/scriptobject.h"

#include <QFileInfo>
#include <QJSEngine>

namespace Morvex {

ScriptApplication::ScriptApplication(Applications *applications)
    : m_applications(applications)
{
}

ScriptApplication::~ScriptApplication() = default;

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
    if (m_beforeStart)
        m_beforeStart();
    QString error;
    m_applications->start(command, {}, &error);
    return error;
}

void ScriptApplication::stop(int context)
{
    if (m_beforeStop)
        use(context, [this, context] { m_beforeStop(context); });
    m_applications->stop(context);
}

bool ScriptApplication::wasStarted() const
{
    return m_applications->wasStarted();
}

bool ScriptApplication::isEndMet() const
{
    const auto context = m_applications->context(m_applications->current());
    return context && context->isEndMet();
}

QString ScriptApplication::end() const
{
    const auto context = m_applications->context(m_applications->current());
    return context ? context->end() : QString();
}

void ScriptApplication::forEachContext(const std::function<void()> &function)
{
    for (const int id : m_applications->contexts())
        use(id, function);
}

// With the context as the current one.
void ScriptApplication::use(int id, const std::function<void()> &function)
{
    const int current = m_applications->current();
    if (!function || !m_applications->setCurrent(id))
        return;
    function();
    m_applications->setCurrent(current);
}

QObject *ScriptApplication::find(const QString &name, int timeout)
{
    QString error;
    const SharedPtr<Object> found = object(name, timeout, &error);
    const std::shared_ptr<RemoteInspector> inspector = m_applications->inspector();
    if (!found && inspector && !inspector->failure().isEmpty())
        qjsEngine(this)->throwError(inspector->failure());
    return new ScriptObject(inspector, name, found, error);
}

QJSValue ScriptApplication::findAll(const QString &name)
{
    const std::shared_ptr<RemoteInspector> inspector = m_applications->inspector();
    QString error = inspector ? QString() : whyNotFindable();
    QVariant found;
    if (inspector) {
        // Takes the object map with it.
        inspector->findObject(name, nullptr);
        found = inspector->callFunction(QStringLiteral("findAll"), {name}, &error);
    }
    if (!error.isEmpty())
        qjsEngine(this)->throwError(error);
    return ScriptObject::listOf(qjsEngine(this), inspector, found.toList());
}

SharedPtr<Object> ScriptApplication::object(const QString &name, int timeout, QString *error) const
{
    const std::shared_ptr<RemoteInspector> inspector = m_applications->inspector();
    QString reason = inspector ? QString() : whyNotFindable();
    const SharedPtr<Object> found =
        inspector ? inspector->waitForObject(name, timeout, &reason) : SharedPtr<Object>();
    if (!found && inspector && name.startsWith(QLatin1Char(':')) && !m_missingObjectMap.isEmpty())
        reason += QStringLiteral(" The file '%1' does not exist.").arg(m_missingObjectMap);
    if (error)
        *error = reason;
    return found;
}

QString ScriptApplication::whyNotFindable() const
{
    const auto context = m_applications->context(m_applications->current());
    if (context)
        return context->end();
    return m_applications->wasStarted() ? QStringLiteral("the application has been stopped")
                                        : QStringLiteral("no application was started");
}

} // namespace Morvex
