#pragma once

#include "morvex_export.h"
#include "remote/protocol/messagechannel.h"

#include <QString>
#include <QVariantList>

#include <functional>
#include <memory>

namespace Morvex {

/// The runner's end of the connection to an application: one request at a time, each answered
/// within a bound. In one thread.
class MORVEX_EXPORT RemoteSession
{
public:
    struct Reply
    {
        /// Empty when the request was done.
        QString error;
        QVariantList values;
        /// Whether the error is the answer of the application itself.
        bool isRefused = false;
    };

    /// Called again and again while an answer is waited for, so that what else is to be done in
    /// this thread is not held up. It may wait for a few milliseconds.
    using Idle = std::function<void()>;

    /// @p describeEnd says how the application ended once the connection is closed; its argument is
    /// whether the application said that it would.
    RemoteSession(std::unique_ptr<MessageChannel> channel,
                  const std::function<QString(bool)> &describeEnd);
    ~RemoteSession();

    /// Without one the thread just waits. @p step is how long it waits in between, in milliseconds.
    void setIdle(const Idle &idle, int step = 50)
    {
        m_idle = idle;
        m_idleStep = step;
    }

    /// How long an answer may take, in milliseconds; a minute at first.
    void setBound(int milliseconds) { m_bound = milliseconds; }

    /// @p duration is how long what is asked for takes by itself, in milliseconds.
    Reply request(Message::Operation operation, const QVariantList &values, int duration = 0);

    /// Lets go of what the agent holds under this handle; not at once.
    void release(quint32 handle);

    /// Closes the connection, after which every request fails with this reason.
    void close(const QString &reason);

    /// Why there are no longer answers; empty while there are.
    QString failure() const { return m_failure; }

    /// Why the last request was not done, though the next one may be; empty when it was. A refusal
    /// by operations that always give the reason to their callers, such as a search, is none.
    QString lastError() const { return m_lastError; }

private:
    void sendReleases();
    Reply exchange(Message::Operation operation, const QVariantList &values, int duration);
    Reply waitForAnswer(quint32 number, int timeout);
    MessageChannel::Outcome receive(Message *message, qint64 timeout);
    Reply handleLoss(MessageChannel::Outcome outcome);

    std::unique_ptr<MessageChannel> m_channel;
    std::function<QString(bool)> m_describeEnd;
    Idle m_idle;
    int m_idleStep = 0;
    int m_bound = 60000;
    quint32 m_lastNumber = 0;
    QVariantList m_releases;
    QString m_failure;
    QString m_lastError;
    bool m_hasSaidBye = false;
};

} // namespace Morvex
