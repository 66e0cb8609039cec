#include "agentplugin.h"

#include "agent/agent.h"
#include "agent/makeagent.h"
#include "agent/startagent.h"

#include <QCoreApplication>
#include <QTimer>

using namespace Morvex;

QObject *AgentPlugin::create(const QString &name, const QString &)
{
    return name.compare(QLatin1String("morvexagent"), Qt::CaseInsensitive) == 0 ? makeAgent()
                                                                                : nullptr;
}

// For the library that is loaded before all others: the application object is half made then, and
// the plugin may come after it.
extern "C" Q_DECL_EXPORT void morvexStartAgentLater()
{
    QTimer::singleShot(0, QCoreApplication::instance(), startAgent);
}
