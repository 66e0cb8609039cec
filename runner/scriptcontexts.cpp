#include "runner/scriptcontexts.h"

#include "remote/remotecontext.h"
#include "runner/applications.h"

namespace Morvex {

ScriptContexts::ScriptContexts(Applications *applications)
    : m_applications(applications)
{
}

QVariantList ScriptContexts::running() const
{
    QVariantList ids;
    for (const int id : m_applications->running())
        ids += id;
    return ids;
}

int ScriptContexts::current() const
{
    return m_applications->current();
}

bool ScriptContexts::setCurrent(int context) const
{
    return m_applications->setCurrent(context);
}

int ScriptContexts::waitForLaunch(int timeout) const
{
    return m_applications->waitForLaunch(timeout);
}

QString ScriptContexts::name(int context) const
{
    const auto found = m_applications->context(context);
    return found ? found->name() : QString();
}

double ScriptContexts::processId(int context) const
{
    const auto found = m_applications->context(context);
    return found ? static_cast<double>(found->processId()) : 0;
}

bool ScriptContexts::isRunning(int context) const
{
    const auto found = m_applications->context(context);
    return found && found->isRunning();
}

bool ScriptContexts::isFrozen(int context, int timeout) const
{
    const auto found = m_applications->context(context);
    return found && found->isFrozen(timeout);
}

QString ScriptContexts::standardOutput(int context) const
{
    return m_applications->standardOutput(context);
}

QString ScriptContexts::standardError(int context) const
{
    return m_applications->standardError(context);
}

} // namespace Morvex
