#include "agentplugin.h"

#include "agent/agent.h"
#include "agent/callingcard.h"
#include "agent/platformmessages.h"

using namespace Morvex;

QObject *AgentPlugin::create(const QString &name, const QString &)
{
    const CallingCard card = CallingCard::fromEnvironment();
    if (name.compare(QLatin1String("morvexagent"), Qt::CaseInsensitive) != 0 || !card.isValid())
        return nullptr;
    const int descriptor = card.connectToRunner();
    if (descriptor < 0)
        return nullptr;
    hideMessagesOfPlatform();
    return new Agent(descriptor, card.hello());
}
