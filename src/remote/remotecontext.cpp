#include "remote/remotecontext.h"

#include "remote/processfacts.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"
#include "remote/stacktrace.h"
#include "remote/watchedprocess.h"

#include <QElapsedTimer>
#include <QFileInfo>

namespace Morvex {
namespace {

const int answerTimeoutMs = 1000;
const int waitStepMs = 20;
// For the status of one that has ended.
const int endTimeoutMs = 5000;
// For another program that the process executes.
const int restartTimeoutMs = 20000;
const qint64 stackTimeoutMs = 10000;

} // namespace

RemoteContext::RemoteContext(ConnectionOffer::Caller caller, const Surroundings &surroundings)
    : m_surroundings(surroundings)
    , m_processId(caller.processId)
    , m_executable(caller.executable)
    , m_startTime(QDateTime::currentDateTime())
    , m_channel(std::move(caller.channel))
{
}

RemoteContext::~RemoteContext()
{
    close(QStringLiteral("the application has been stopped"));
}

QString RemoteContext::name() const
{
    return QFileInfo(m_executable).fileName();
}

void RemoteContext::welcome()
{
    Message welcome;
    welcome.type = Message::Welcome;
    if (!m_channel->send(welcome, answerTimeoutMs))
        m_channel->shutDown();
}

void RemoteContext::callAgain(ConnectionOffer::Caller caller)
{
    m_next = std::move(caller);
}

// Not within a call of the inspector that it replaces.
void RemoteContext::takeNextConnection()
{
    if (!m_next.channel)
        return;
    if (m_inspector)
        m_inspector->session().close(
            QStringLiteral("the application has started itself again since the object was found"));
    m_inspector.reset();
    m_failure.clear();
    m_channel = std::move(m_next.channel);
    m_executable = m_next.executable;
    m_next = {};
    welcome();
}

bool RemoteContext::isReady()
{
    m_surroundings.update(0);
    takeNextConnection();
    if (!m_channel)
        return m_inspector != nullptr;
    Message message;
    const MessageChannel::Outcome outcome = m_channel->receive(&message, 0);
    if (outcome == MessageChannel::TimedOut)
        return false;
    if (outcome == MessageChannel::Received && message.type == Message::Ready) {
        makeInspector();
        return true;
    }
    m_channel.reset();
    m_failure = describeEnd(false);
    return false;
}

void RemoteContext::makeInspector()
{
    auto session = std::make_unique<RemoteSession>(
        std::move(m_channel), [this](bool hasSaidBye) { return describeEnd(hasSaidBye); },
        [this](bool isAgentThere) { return describeSilence(isAgentThere); });
    session->setBound(m_surroundings.bound);
    session->setDeadline(m_surroundings.deadline);
    session->setIdle([this] {
        m_surroundings.update(0);
        if (m_surroundings.idle)
            m_surroundings.idle();
    });
    m_inspector = std::make_shared<RemoteInspector>(std::move(session));
}

std::shared_ptr<RemoteInspector> RemoteContext::inspector()
{
    QElapsedTimer timer;
    timer.start();
    // One that has executed another program comes to its event loop again.
    while (!isReady() && m_channel && timer.elapsed() < restartTimeoutMs) {
        m_surroundings.update(waitStepMs);
        if (m_surroundings.idle)
            m_surroundings.idle();
    }
    return m_inspector;
}

// Waits until it is known how the process has ended, or that it goes on as another program.
QString RemoteContext::describeEnd(bool hasSaidBye)
{
    QElapsedTimer timer;
    timer.start();
    const ProcessFacts process(m_processId);
    const auto isEndKnown = [this] {
        return m_surroundings.hasEnded() || !m_surroundings.endOf(m_processId).isEmpty();
    };
    bool isOver = false;
    while (!m_next.channel && !isEndKnown() &&
           timer.elapsed() < (process.isRunning() ? restartTimeoutMs : endTimeoutMs)) {
        if (!isOver && !process.exists()) {
            isOver = true;
            m_surroundings.catchUp();
            continue;
        }
        // What another process alone has learned may follow from how that one ends, a moment later.
        if (isOver && (hasSaidBye || !m_surroundings.endOfStarter().isEmpty()))
            break;
        m_surroundings.update(waitStepMs);
        if (m_surroundings.idle)
            m_surroundings.idle();
    }
    // This process may have been stopped while the time passed.
    if (!m_next.channel && !isEndKnown())
        m_surroundings.catchUp();
    return describeLoss(hasSaidBye);
}

QString RemoteContext::describeLoss(bool hasSaidBye) const
{
    if (m_next.channel)
        return QStringLiteral("the application has started itself again");
    const QString end = m_surroundings.endOf(m_processId);
    if (!end.isEmpty())
        return QStringLiteral("the application has %1").arg(end);
    if (hasSaidBye && !hasCrashed())
        return QStringLiteral("the application has ended by itself");
    if (ProcessFacts(m_processId).isRunning())
        return QStringLiteral("the application has closed the connection");
    const QString starter = m_surroundings.endOfStarter();
    return starter.isEmpty()
               ? QStringLiteral("the application has ended; the program that started it knows how")
               : QStringLiteral("the application has ended; the program that started it has %1")
                     .arg(starter);
}

QString RemoteContext::describeSilence(bool isAgentThere)
{
    const bool isStopped = ProcessFacts(m_processId).isStopped();
    if (!m_isProbed)
        reportHanging();
    if (isStopped)
        return QStringLiteral(": its process has been stopped");
    return isAgentThere ? QStringLiteral(": it hangs, or is busy")
                        : QStringLiteral(": nothing in its process runs");
}

void RemoteContext::reportHanging() const
{
    if (!m_surroundings.hangs)
        return;
    // A debugger might have it go on.
    if (ProcessFacts(m_processId).isStopped())
        return m_surroundings.hangs(QStringLiteral("Its process has been stopped."));
    // There is to be time for the report.
    const qint64 left = m_surroundings.deadline.remainingTime();
    const qint64 timeout =
        m_surroundings.deadline.isForever() ? stackTimeoutMs : qMin(stackTimeoutMs, left / 2);
    m_surroundings.hangs(stackTrace(m_processId, static_cast<int>(timeout), m_surroundings.idle));
}

bool RemoteContext::isRunning()
{
    return end().isEmpty() && (m_channel || m_inspector);
}

QString RemoteContext::end()
{
    m_surroundings.update(0);
    takeNextConnection();
    if (!m_inspector)
        return m_failure;
    m_inspector->session().update();
    takeNextConnection();
    return m_inspector ? m_inspector->session().failure() : m_failure;
}

bool RemoteContext::isFrozen(int timeout)
{
    const std::shared_ptr<RemoteInspector> asked = inspector();
    if (!asked || !end().isEmpty())
        return false;
    RemoteSession &session = asked->session();
    session.setBound(timeout);
    m_isProbed = true;
    session.request(Message::HasNamespace, {QString()});
    m_isProbed = false;
    session.setBound(m_surroundings.bound);
    return session.failure().isEmpty() && session.isBehind();
}

bool RemoteContext::isEndOrderly() const
{
    return m_inspector && m_inspector->session().hasSaidBye() && !hasCrashed();
}

bool RemoteContext::hasCrashed() const
{
    const QString end = m_surroundings.endOf(m_processId);
    return end.isEmpty() ? m_surroundings.hasCommandCrashed() : WatchedProcess::isCrash(end);
}

QString RemoteContext::crash() const
{
    return hasCrashed() ? describeLoss(true) : QString();
}

bool RemoteContext::hasDumpedCore() const
{
    return m_surroundings.hasDumpedCore(m_processId);
}

bool RemoteContext::isEndMet() const
{
    return m_inspector && m_inspector->session().isEndMet();
}

bool RemoteContext::isBehind() const
{
    return m_inspector && m_inspector->session().isBehind();
}

void RemoteContext::close(const QString &reason)
{
    if (m_inspector)
        m_inspector->session().close(reason);
    if (m_channel)
        m_channel->shutDown();
    if (m_failure.isEmpty())
        m_failure = reason;
    // What is around it may no longer be there.
    m_surroundings.endOf = [](qint64) { return QString(); };
    m_surroundings.hasDumpedCore = [](qint64) { return false; };
    m_surroundings.endOfStarter = [] { return QString(); };
    m_surroundings.hasEnded = [] { return true; };
    m_surroundings.update = [](int) {};
    m_surroundings.idle = nullptr;
    m_surroundings.hangs = nullptr;
}

} // namespace Morvex
