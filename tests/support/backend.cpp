#include "support/backend.h"

#include "agent/agent.h"
#include "qtbackend/qtinspector.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"

#include <QCoreApplication>

#include <sys/socket.h>

using namespace Morvex;

namespace MorvexTest {
namespace {

// The thread that waits for an answer is the one that has to give it.
void turn()
{
    // Outside of a running event loop nobody else would delete them.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

Message waitFor(MessageChannel *channel)
{
    Message message;
    while (channel->receive(&message, 1) == MessageChannel::TimedOut)
        turn();
    return message;
}

} // namespace

struct Backend::Private
{
    std::unique_ptr<QtInspector> local;
    std::unique_ptr<Agent> agent;
    std::unique_ptr<RemoteInspector> remote;

    void connect()
    {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            qFatal("no sockets");
        agent = std::make_unique<Agent>(ends[0], Message(), [] {});
        auto channel = std::make_unique<MessageChannel>(ends[1]);
        Message welcome;
        welcome.type = Message::Welcome;
        if (waitFor(channel.get()).type != Message::Hello || !channel->send(welcome, 1000) ||
            waitFor(channel.get()).type != Message::Ready)
            qFatal("the agent is not ready");
        auto session = std::make_unique<RemoteSession>(std::move(channel),
                                                       [](bool) { return QString("closed"); });
        session->setIdle(turn, 1);
        remote = std::make_unique<RemoteInspector>(std::move(session));
    }
};

Backend::Backend()
    : d(std::make_unique<Private>())
{
    if (isRemote())
        d->connect();
    else
        d->local = std::make_unique<QtInspector>();
}

Backend::~Backend() = default;

Inspector &Backend::inspector()
{
    return isRemote() ? static_cast<Inspector &>(*d->remote) : *d->local;
}

bool Backend::isRemote()
{
    return qgetenv("MORVEX_TEST_BACKEND") == "remote";
}

} // namespace MorvexTest
