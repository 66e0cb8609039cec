#pragma once

#include "morvex_export.h"
#include "remote/protocol/messagechannel.h"

#include <QDeadlineTimer>
#include <QSet>
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

    /// Says how the application ended once the connection is closed; the argument is whether the
    /// application said that it would.
    using DescribeEnd = std::function<QString(bool)>;
    /// Says why an application that runs doesn't answer; the argument is whether the agent's own
    /// thread does. Its text follows on how long there was no answer.
    using DescribeSilence = std::function<QString(bool)>;

    RemoteSession(std::unique_ptr<MessageChannel> channel, const DescribeEnd &describeEnd,
                  const DescribeSilence &describeSilence = nullptr);
    ~RemoteSession();

    /// Without one the thread just waits. @p step is how long it waits in between, in milliseconds.
    void setIdle(const Idle &idle, int step = 50)
    {
        m_idle = idle;
        m_idleStep = step;
    }

    /// How long an answer may take, in milliseconds; a minute at first.
    void setBound(int milliseconds) { m_bound = milliseconds; }

    /// When the test case is ended if it has not come to its end. An answer is waited for no longer
    /// than to a time before it in which it can be said that there was none. Never at first.
    void setDeadline(const QDeadlineTimer &deadline) { m_deadline = deadline; }

    /// How much of a wait of this many milliseconds leaves time before the deadline.
    int beforeDeadline(int duration) const;

    /// An action after which the application ends as it should is done.
    /// @p duration is how long what is asked for takes by itself, in milliseconds.
    Reply request(Message::Operation operation, const QVariantList &values, int duration = 0);

    /// Lets the application report what its user does. Returns an error text, empty on success.
    [[nodiscard]] QString record();
    /// What came since the last call, in the order in which it was done; see update.
    QVariantList takeRecorded();

    /// Lets go of what the agent holds under this handle; not at once.
    void release(quint32 handle);

    /// Closes the connection, after which every request fails with this reason.
    void close(const QString &reason);

    /// Whether this end has closed it.
    bool isClosed() const { return m_isClosed; }

    /// Why there are no longer answers; empty while there are.
    QString failure() const { return m_failure; }

    /// Whether a request has failed because the application had ended.
    bool isEndMet() const { return m_isEndMet; }
    /// For requests that are no call of the script.
    void setEndMet(bool isMet) { m_isEndMet = isMet; }
    bool hasSaidBye() const { return m_byes > 0; }
    /// The usage that an application has sent at its end, as "dumpUsage" answers; null for none.
    QByteArray lastUsage() const { return m_lastUsage; }
    /// Whether the application has not come to what it was asked for last.
    bool isBehind() const { return m_unanswered.contains(m_lastNumber); }
    /// Waits up to this many milliseconds for it to come to that. False when it does not.
    bool catchUp(int timeout);

    /// Takes what came meanwhile, which is no more than was asked for; an end of the connection is
    /// known after that.
    void update();

    /// Why the last request was not done, though the next one may be; empty when it was. A refusal
    /// by operations that always give the reason to their callers, such as a search, is none.
    QString lastError() const { return m_lastError; }

private:
    int boundOf(int duration) const;
    void sendReleases();
    bool send(const QByteArray &request, int timeout);
    Reply exchange(Message::Operation operation, const QVariantList &values, int duration);
    Reply waitForAnswer(const Message &request, int timeout);
    MessageChannel::Outcome waitForMessage(quint32 number, int timeout, Message *answer);
    bool take(const Message &message);
    bool takeBye(const Message &message);
    bool isPonged(quint32 number, Message *answer);
    QString silence(int timeout, bool isAgentThere);
    MessageChannel::Outcome receive(Message *message, qint64 timeout);
    void lose(MessageChannel::Outcome outcome);
    Reply handleLoss(MessageChannel::Outcome outcome, Message::Operation operation);

    std::unique_ptr<MessageChannel> m_channel;
    DescribeEnd m_describeEnd;
    DescribeSilence m_describeSilence;
    Idle m_idle;
    int m_idleStep = 0;
    int m_bound = 60000;
    QDeadlineTimer m_deadline{QDeadlineTimer::Forever};
    quint32 m_lastNumber = 0;
    // Those of requests and pings without an answer. That to one which was given up may still come.
    QSet<quint32> m_unanswered;
    QSet<quint32> m_unansweredPings;
    QVariantList m_releases;
    // A part of a message makes all that follows unreadable.
    bool m_isTorn = false;
    QString m_failure;
    QString m_lastError;
    int m_byes = 0;
    QByteArray m_lastUsage;
    bool m_isRecording = false;
    QVariantList m_recorded;
    qint64 m_recordedBytes = 0;
    bool m_hasPonged = false;
    bool m_isEndMet = false;
    bool m_isClosed = false;
};

} // namespace Morvex
