#include "agent/agentreceiver.h"

#include "agent/agentconnection.h"
#include "agent/pendingaction.h"
#include "agent/pendingsearch.h"

#include <QCoreApplication>

namespace Morvex {
namespace {

// The end of the application waits until its runner has taken it.
const int maxUsageSize = 16 * 1024 * 1024;

} // namespace

QVariantList AgentReceiver::lastWords()
{
    if (m_isEndAskedFor)
        return {};
    const QByteArray usage = m_calls.inspector().countedUsage();
    return usage.isNull() || usage.size() > maxUsageSize ? QVariantList() : QVariantList{usage};
}

bool AgentReceiver::event(QEvent *event)
{
    if (event->type() != MessageEvent::eventType())
        return QObject::event(event);
    take(static_cast<const MessageEvent *>(event)->message());
    return true;
}

void AgentReceiver::take(const Message &message)
{
    switch (message.type) {
    case Message::Welcome: {
        Message ready;
        ready.type = Message::Ready;
        return send(ready);
    }
    case Message::Release:
        return m_calls.release(message.values);
    case Message::Request:
        return perform(message);
    default:
        return;
    }
}

void AgentReceiver::record()
{
    m_calls.inspector().record([this](const QVariantMap &action) {
        Message message;
        message.type = Message::Recorded;
        message.values = {action};
        send(message);
    });
}

void AgentReceiver::perform(const Message &request)
{
    const auto sendAnswer = [this](const Message &answer) { send(answer); };
    switch (request.operation) {
    case Message::FindObject:
        (new PendingSearch(m_calls, request, sendAnswer, this))->look();
        return;
    case Message::SetProperty:
    case Message::InvokeMethod:
    case Message::CallFunction:
        (new PendingAction(m_calls, request, sendAnswer, this))->begin();
        return;
    case Message::Record: {
        record();
        Message answer = request;
        answer.type = Message::Answer;
        answer.values.clear();
        send(answer);
        return;
    }
    case Message::Quit: {
        Message answer = request;
        answer.type = Message::Answer;
        send(answer);
        m_isEndAskedFor = true;
        QCoreApplication::quit();
        return;
    }
    default:
        send(m_calls.answer(request));
    }
}

} // namespace Morvex
