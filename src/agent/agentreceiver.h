#pragma once

#include "agent/agentcalls.h"

#include <QObject>

#include <functional>

namespace Morvex {

/// Does in the main thread what the runner asks for, and sends the answers.
class AgentReceiver : public QObject
{
    Q_OBJECT

public:
    /// Also from a nested event loop.
    using Sender = std::function<void(const Message &)>;

    AgentCalls &calls() { return m_calls; }
    void setSender(const Sender &sender) { m_sender = sender; }
    void send(const Message &message) { m_sender(message); }

    /// What the runner is to know when the application ends: the usage that was counted, unless it
    /// has asked for the end, or there is too much of it.
    QVariantList lastWords();

    bool event(QEvent *event) override;

private:
    void take(const Message &message);
    void record();
    void perform(const Message &request);

    AgentCalls m_calls;
    Sender m_sender;
    bool m_isEndAskedFor = false;
};

} // namespace Morvex
