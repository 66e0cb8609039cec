#include "remote/remoteapplication.h"

#include "remote/applicationenvironment.h"
#include "remote/applicationhome.h"
#include "remote/connectionoffer.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"
#include "remote/watchedprocess.h"

#include <QElapsedTimer>

namespace Morvex {
namespace {

const int waitStepMs = 20;
const int quitTimeoutMs = 3000;
const int endTimeoutMs = 2000;
const int answerTimeoutMs = 1000;
} // namespace

struct RemoteApplication::Private
{
    std::shared_ptr<ApplicationHome> home;
    qint64 processId = 0;
    std::unique_ptr<ConnectionOffer> offer;
    std::unique_ptr<WatchedProcess> process;
    std::unique_ptr<RemoteInspector> inspector;

    QString launch(const Start &start);
    std::unique_ptr<MessageChannel> waitForConnection(const Start &start, QString *error);
    QString whyNoConnection(const Start &start, bool isTooLate) const;
    QString waitUntilReady(MessageChannel *channel, const Start &start);
    QString connect(const Start &start);
    QString describeEnd(bool hasSaidBye);
    void waitForEnd(int timeout);
};

// Each of these returns an error text, empty on success.

QString RemoteApplication::Private::launch(const Start &start)
{
    home = start.home;
    if (!home)
        home = std::make_shared<ApplicationHome>(
            ApplicationHome::Options{start.prefix, {}, start.keptVariables});
    if (!home->error().isEmpty())
        return home->error();
    offer = std::make_unique<ConnectionOffer>(home->newSocketPath());
    const QString error = offer->listen();
    if (!error.isEmpty())
        return error;
    const QString agentDirectory = start.prefix + QLatin1String("/lib/agent");
    WatchedProcess::Options options;
    options.watcher = agentDirectory + QLatin1String("/morvexwatcher");
    options.command = start.command;
    options.workingDirectory = start.workingDirectory;
    options.environment = QProcessEnvironment::systemEnvironment();
    options.lifeline = home->lifeline();
    addAgent(&options.environment, agentDirectory, *offer);
    makePrivate(&options.environment, *home, start.keptVariables);
    process = std::make_unique<WatchedProcess>(options);
    if (process->error().isEmpty())
        process->allowStart();
    return process->error();
}

// Silence is the worst answer: this says what is known.
QString RemoteApplication::Private::whyNoConnection(const Start &start, bool isTooLate) const
{
    const QString name = start.command.value(0);
    const QString end = process->endOfProgram();
    if (!isTooLate)
        return QStringLiteral("'%1' %2 before it could be tested")
            .arg(name, end.isEmpty() ? QStringLiteral("has ended") : end);
    return QStringLiteral("'%1' gives no access to its windows within %2 seconds; it %3. It has to "
                          "be a program with windows made with Qt 5.15, linked dynamically")
        .arg(name, QString::number(start.timeout / 1000.0),
             end.isEmpty() ? QStringLiteral("is running") : end);
}

std::unique_ptr<MessageChannel> RemoteApplication::Private::waitForConnection(const Start &start,
                                                                              QString *error)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        ConnectionOffer::Caller caller = offer->waitForCaller(waitStepMs);
        process->update(0);
        if (start.idle)
            start.idle();
        *error = caller.error.isEmpty() ? process->error() : caller.error;
        const bool isTooLate = timer.elapsed() > start.timeout;
        if (error->isEmpty() && !caller.channel && (process->hasEnded() || isTooLate))
            *error = whyNoConnection(start, isTooLate);
        if (!error->isEmpty())
            return nullptr;
        if (caller.channel) {
            processId = caller.processId;
            return std::move(caller.channel);
        }
    }
}

QString RemoteApplication::Private::waitUntilReady(MessageChannel *channel, const Start &start)
{
    Message welcome;
    welcome.type = Message::Welcome;
    QElapsedTimer timer;
    timer.start();
    MessageChannel::Outcome outcome =
        channel->send(welcome, answerTimeoutMs) ? MessageChannel::TimedOut : MessageChannel::Closed;
    Message message;
    while (outcome == MessageChannel::TimedOut && timer.elapsed() <= start.timeout) {
        outcome = channel->receive(&message, waitStepMs);
        if (start.idle)
            start.idle();
    }
    if (outcome == MessageChannel::Received && message.type == Message::Ready)
        return {};
    return outcome == MessageChannel::TimedOut
               ? QStringLiteral("the event loop of '%1' does not run within %2 seconds")
                     .arg(start.command.value(0))
                     .arg(start.timeout / 1000.0)
               : describeEnd(false);
}

QString RemoteApplication::Private::connect(const Start &start)
{
    QString error;
    std::unique_ptr<MessageChannel> channel = waitForConnection(start, &error);
    // Other processes of the program go on without an agent.
    offer.reset();
    if (channel)
        error = waitUntilReady(channel.get(), start);
    if (!error.isEmpty())
        return error;
    auto session = std::make_unique<RemoteSession>(
        std::move(channel), [this](bool hasSaidBye) { return describeEnd(hasSaidBye); });
    session->setIdle([this, idle = start.idle] {
        process->update(0);
        if (idle)
            idle();
    });
    inspector = std::make_unique<RemoteInspector>(std::move(session));
    return {};
}

void RemoteApplication::Private::waitForEnd(int timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (process->endOf(processId).isEmpty() && !process->hasEnded() && timer.elapsed() < timeout)
        process->update(waitStepMs);
}

QString RemoteApplication::Private::describeEnd(bool hasSaidBye)
{
    waitForEnd(endTimeoutMs);
    const QString end = process->endOf(processId);
    if (!end.isEmpty())
        return QStringLiteral("the application has %1").arg(end);
    return hasSaidBye ? QStringLiteral("the application has ended by itself")
                      : QStringLiteral("the application has closed the connection");
}

RemoteApplication::RemoteApplication()
    : d(std::make_unique<Private>())
{
}

RemoteApplication::~RemoteApplication()
{
    if (d->inspector && isRunning()) {
        RemoteSession &session = d->inspector->session();
        session.setBound(answerTimeoutMs);
        if (session.request(Message::Quit, {}).error.isEmpty())
            d->waitForEnd(quitTimeoutMs);
    }
    d->inspector.reset();
    d->process.reset();
    d->offer.reset();
    d->home.reset();
}

std::unique_ptr<RemoteApplication> RemoteApplication::start(const Start &start, QString *error)
{
    std::unique_ptr<RemoteApplication> application(new RemoteApplication);
    *error = application->d->launch(start);
    if (error->isEmpty())
        *error = application->d->connect(start);
    return error->isEmpty() ? std::move(application) : nullptr;
}

RemoteInspector *RemoteApplication::inspector()
{
    return d->inspector.get();
}

qint64 RemoteApplication::processId() const
{
    return d->processId;
}

QString RemoteApplication::standardOutput() const
{
    return QString::fromLocal8Bit(d->process->standardOutput());
}

QString RemoteApplication::standardError() const
{
    return QString::fromLocal8Bit(d->process->standardError());
}

bool RemoteApplication::isRunning()
{
    d->process->update(0);
    return d->inspector->session().failure().isEmpty() &&
           d->process->endOf(d->processId).isEmpty() && !d->process->hasEnded();
}

} // namespace Morvex
