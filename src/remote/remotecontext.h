#pragma once

#include "morvex_export.h"
#include "remote/connectionoffer.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QString>

#include <functional>
#include <memory>

namespace Morvex {

class RemoteInspector;
class WatchedProcess;

/// One process of an application that can be tested: where names are looked up. It stays the same
/// when the process executes another program, or its own again.
class MORVEX_EXPORT RemoteContext
{
public:
    /// What it needs to know of what is around it. The last two functions may be empty.
    struct Surroundings
    {
        /// How a process has ended, as WatchedProcess says it; empty while that is not known.
        std::function<QString(qint64)> endOf;
        /// Whether one has left a core.
        std::function<bool(qint64)> hasDumpedCore;
        /// How the program that was started at first has ended; empty while that is not known.
        std::function<QString()> endOfStarter;
        /// Whether that program was a shell whose command has crashed.
        std::function<bool()> hasCommandCrashed;
        /// Whether no process of the application is left.
        std::function<bool()> hasEnded;
        /// Takes all ends that are known by now.
        std::function<void()> catchUp;
        /// Takes what has happened meanwhile, waiting for it up to this many milliseconds.
        std::function<void(int)> update;
        /// Called again and again while an answer is waited for.
        std::function<void()> idle;
        /// Called with the stack of an application that hangs, or what is known instead; empty when
        /// nothing is.
        std::function<void(const QString &)> hangs;
        /// How long an answer may take, in milliseconds.
        int bound = 60000;
        /// When the test case is ended.
        QDeadlineTimer deadline{QDeadlineTimer::Forever};
    };

    RemoteContext(ConnectionOffer::Caller caller, const Surroundings &surroundings);
    ~RemoteContext();

    RemoteContext(const RemoteContext &) = delete;
    RemoteContext &operator=(const RemoteContext &) = delete;

    /// Lets the agent begin its work. The same when the process has called again.
    void welcome();
    void callAgain(ConnectionOffer::Caller caller);

    /// Whether the event loop of the application runs, so that it can be used.
    bool isReady();

    /// Null until it is ready. Objects that it has handed out may outlive it, and so may itself.
    std::shared_ptr<RemoteInspector> inspector();

    qint64 processId() const { return m_processId; }
    QString executable() const { return m_executable; }
    /// The file name of the executable.
    QString name() const;
    QDateTime startTime() const { return m_startTime; }

    bool isRunning();
    /// Whether it gives no answer within this many milliseconds.
    bool isFrozen(int timeout);

    /// How it has ended: "the application has crashed by signal 11 (Segmentation fault)". Empty
    /// while it runs.
    QString end();
    /// Whether it has ended as an application should, by leaving its event loop and without a crash
    /// after that.
    bool isEndOrderly() const;
    bool hasCrashed() const;
    /// As end(); empty when it has not crashed.
    QString crash() const;
    /// Whether it has crashed so that its memory can be looked at.
    bool hasDumpedCore() const;
    /// Whether a call has failed because of the end.
    bool isEndMet() const;
    /// Whether it has not come to what it was asked for last.
    bool isBehind() const;

    /// Reports where it hangs by the function for that, unless it is empty.
    void reportHanging() const;

    /// Takes no stack of it from now on, as that takes seconds: what hangs is about to be ended.
    void ignoreHanging() { m_surroundings.hangs = nullptr; }

    /// Every use of it and its objects fails with this reason from now on.
    void close(const QString &reason);

private:
    void takeNextConnection();
    QString describeEnd(bool hasSaidBye);
    QString describeLoss(bool hasSaidBye) const;
    QString describeSilence(bool isAgentThere);
    void makeInspector();

    Surroundings m_surroundings;
    qint64 m_processId;
    QString m_executable;
    QDateTime m_startTime;
    // One that is not ready yet.
    std::unique_ptr<MessageChannel> m_channel;
    // That of the same process once it has executed another program.
    ConnectionOffer::Caller m_next;
    std::shared_ptr<RemoteInspector> m_inspector;
    QString m_failure;
    bool m_isProbed = false;
};

} // namespace Morvex
