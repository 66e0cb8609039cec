#include "agent/startagent.h"

#include "agent/agent.h"
#include "agent/callingcard.h"
#include "agent/emptyclipboard.h"
#include "agent/makeagent.h"
#include "agent/platformmessages.h"
#include "qtbackend/sceneaccess.h"

#include <QGuiApplication>

namespace Morvex {
namespace {

Agent *ownedAgent = nullptr;

void deleteAgent()
{
    delete ownedAgent;
    ownedAgent = nullptr;
}

} // namespace

Agent *makeAgent()
{
    // There may be several ways in at once.
    static bool isMade = false;
    const CallingCard card = CallingCard::fromEnvironment();
    const int descriptor =
        isMade || !card.isValid() || card.isPresented() ? -1 : card.connectToRunner();
    if (descriptor < 0)
        return nullptr;
    isMade = true;
    hideMessagesOfPlatform();
    fillEmptyClipboard();
    SceneAccess::setLibraryDirectory(card.directory());
    return new Agent(descriptor, card.hello());
}

void startAgent()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return;
    ownedAgent = makeAgent();
    if (ownedAgent)
        qAddPostRoutine(deleteAgent);
}

} // namespace Morvex
