#include "remote/remoteapplication.h"

#include "objectmodel/value/decodedtext.h"

#include "remote/applicationenvironment.h"
#include "remote/applicationhome.h"
#include "remote/connectionoffer.h"
#include "remote/processfacts.h"
#include "remote/protocol/environmentnames.h"
#include "remote/remotecontext.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"
#include "remote/waitwithin.h"
#include "remote/watchedprocess.h"
#include "remote/whynoconnection.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <csignal>
#include <functional>
#include <vector>

namespace Morvex {
namespace {

const int waitStepMs = 20;
const int quitTimeoutMs = 3000;
const int answerTimeoutMs = 1000;
// Others go on without an agent.
const int maxSleeping = 100;
const int maxContexts = 1000;
// Of one that calls again and again, the rest comes later.
const int maxCallersAtOnce = 100;

bool hasEnded(const ConnectionOffer::Caller &caller)
{
    return !ProcessFacts(caller.processId).isRunning();
}

} // namespace

struct RemoteApplication::Private
{
    Start start;
    std::shared_ptr<ApplicationHome> home;
    std::unique_ptr<ConnectionOffer> offer;
    std::unique_ptr<WatchedProcess> process;
    QList<std::shared_ptr<RemoteContext>> contexts;
    // Their agents wait to be wanted.
    std::vector<ConnectionOffer::Caller> sleeping;
    QString callerError;
    bool isEnded = false;

    [[nodiscard]] QString launch();
    [[nodiscard]] QString waitForContext();
    [[nodiscard]] QString waitUntilReady(RemoteContext &context, const QDeadlineTimer &deadline);
    void update(int timeout);
    void take(ConnectionOffer::Caller caller);
    void letSleep(ConnectionOffer::Caller caller);
    void forgetSleeping(const std::function<bool(const ConnectionOffer::Caller &)> &isOver);
    bool isWanted(const ConnectionOffer::Caller &caller) const;
    QStringList unlisted() const;
    std::shared_ptr<RemoteContext> add(ConnectionOffer::Caller caller);
    [[nodiscard]] QString waitOnce();
    [[nodiscard]] QString quit(RemoteContext &context);
    void endOrphans();
};

// Each of these returns an error text, empty on success.

QString RemoteApplication::Private::launch()
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
    QStringList kept = start.keptVariables;
    for (const QString &variable : qAsConst(start.variables)) {
        kept += variable.section(QLatin1Char('='), 0, 0);
        options.environment.insert(kept.constLast(), variable.section(QLatin1Char('='), 1));
    }
    addAgent(&options.environment, agentDirectory, *offer);
    home->makePrivate(&options.environment, kept);
    process = std::make_unique<WatchedProcess>(options);
    if (process->error().isEmpty())
        process->allowStart();
    return process->error();
}

QString RemoteApplication::Private::waitOnce()
{
    update(waitStepMs);
    if (start.idle)
        start.idle();
    return start.isCancelled && start.isCancelled()
               ? QStringLiteral("the start of '%1' was cancelled").arg(start.command.value(0))
               : QString();
}

QString RemoteApplication::Private::waitForContext()
{
    const QDeadlineTimer deadline(start.timeout);
    while (contexts.isEmpty()) {
        QString error = waitOnce();
        if (error.isEmpty())
            error = callerError.isEmpty() ? process->error() : callerError;
        if (!error.isEmpty())
            return error;
        const bool isTooLate = deadline.hasExpired();
        // What it said before its end.
        if (process->hasEnded())
            update(0);
        if (contexts.isEmpty() && (process->hasEnded() || isTooLate))
            return whyNoConnection(start.command.value(0), *process, isTooLate ? start.timeout : -1,
                                   unlisted());
    }
    const QString error = waitUntilReady(*contexts.constFirst(), deadline);
    // One that has said who it is, but goes no further.
    if (!error.isEmpty() && contexts.constFirst()->isRunning())
        contexts.constFirst()->reportHanging();
    return error;
}

QString RemoteApplication::Private::waitUntilReady(RemoteContext &context,
                                                   const QDeadlineTimer &deadline)
{
    while (!context.isReady()) {
        const QString end = context.end();
        if (!end.isEmpty())
            return end;
        if (deadline.hasExpired())
            return QStringLiteral("the event loop of '%1' does not run within %2 seconds")
                .arg(start.command.value(0))
                .arg(start.timeout / 1000.0);
        const QString error = waitOnce();
        if (!error.isEmpty())
            return error;
    }
    return {};
}

void RemoteApplication::Private::update(int timeout)
{
    for (int count = 0; count < maxCallersAtOnce; ++count) {
        ConnectionOffer::Caller caller = offer->waitForCaller(count == 0 ? timeout : 0);
        if (!caller.error.isEmpty())
            callerError = caller.error;
        else if (caller.channel)
            take(std::move(caller));
        else
            break;
    }
    process->update(0);
}

void RemoteApplication::Private::take(ConnectionOffer::Caller caller)
{
    const auto known =
        std::find_if(contexts.begin(), contexts.end(), [&caller](const auto &context) {
            return context->processId() == caller.processId;
        });
    if (known != contexts.end())
        (*known)->callAgain(std::move(caller));
    else if (isWanted(caller))
        add(std::move(caller));
    else
        letSleep(std::move(caller));
}

void RemoteApplication::Private::forgetSleeping(
    const std::function<bool(const ConnectionOffer::Caller &)> &isOver)
{
    sleeping.erase(std::remove_if(sleeping.begin(), sleeping.end(), isOver), sleeping.end());
}

// Those that have ended make room, and so does what a process was before it executed itself.
void RemoteApplication::Private::letSleep(ConnectionOffer::Caller caller)
{
    forgetSleeping([&caller](const ConnectionOffer::Caller &one) {
        return one.processId == caller.processId;
    });
    if (sleeping.size() >= maxSleeping)
        forgetSleeping(hasEnded);
    if (sleeping.size() < maxSleeping)
        sleeping.push_back(std::move(caller));
}

bool RemoteApplication::Private::isWanted(const ConnectionOffer::Caller &caller) const
{
    const bool isListed = start.whiteList.isEmpty() ||
                          start.whiteList.contains(QFileInfo(caller.executable).fileName());
    return isListed &&
           (contexts.isEmpty() || (start.hooksSubProcesses && contexts.size() < maxContexts));
}

// While there is no context, all that called and were not wanted.
QStringList RemoteApplication::Private::unlisted() const
{
    QStringList programs;
    for (const ConnectionOffer::Caller &caller : sleeping)
        programs += QFileInfo(caller.executable).fileName();
    programs.removeDuplicates();
    return programs;
}

std::shared_ptr<RemoteContext> RemoteApplication::Private::add(ConnectionOffer::Caller caller)
{
    RemoteContext::Surroundings surroundings;
    surroundings.endOf = [this](qint64 id) { return process->endOf(id); };
    surroundings.hasDumpedCore = [this](qint64 id) { return process->hasDumpedCore(id); };
    surroundings.endOfStarter = [this] { return process->endOfProgram(); };
    surroundings.update = [this](int timeout) { update(timeout); };
    surroundings.hasCommandCrashed = [this] { return process->hasCommandCrashed(); };
    surroundings.hasEnded = [this] { return process->hasEnded(); };
    surroundings.catchUp = [this] { process->catchUp(); };
    surroundings.idle = start.idle;
    surroundings.hangs = start.hangs;
    surroundings.bound = start.bound;
    surroundings.deadline = start.deadline;
    process->keepEndOf(caller.processId);
    contexts += std::make_shared<RemoteContext>(std::move(caller), surroundings);
    contexts.constLast()->welcome();
    return contexts.constLast();
}

// One that has not come to what it was asked for last would not come to this either. Returns how it
// has crashed by that.
QString RemoteApplication::Private::quit(RemoteContext &context)
{
    if (!context.isRunning() || !context.isReady() || context.isBehind())
        return {};
    RemoteSession &session = context.inspector()->session();
    session.setBound(answerTimeoutMs);
    const bool goes = session.request(Message::Quit, {}).error.isEmpty();
    QElapsedTimer timer;
    timer.start();
    while (goes && process->endOf(context.processId()).isEmpty() && !process->hasEnded() &&
           timer.elapsed() < quitTimeoutMs)
        process->update(waitStepMs);
    return context.crash();
}

// Those that a watcher which was killed has left: their environment still has the token.
void RemoteApplication::Private::endOrphans()
{
    const QString token = QString::fromLatin1(offer->token());
    const QStringList names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &name : names) {
        const qint64 id = name.toLongLong();
        if (id > 1 &&
            ProcessFacts(id).environmentVariable(QString::fromLatin1(tokenVariable)) == token)
            ::kill(static_cast<pid_t>(id), SIGKILL);
    }
}

RemoteApplication::RemoteApplication()
    : d(std::make_unique<Private>())
{
}

RemoteApplication::~RemoteApplication()
{
    end();
    d->process.reset();
    d->contexts.clear();
    d->offer.reset();
    d->home.reset();
}

QString RemoteApplication::end()
{
    if (d->isEnded)
        return {};
    d->isEnded = true;
    for (const auto &context : qAsConst(d->contexts))
        context->ignoreHanging();
    const QString crash = d->contexts.isEmpty() ? QString() : d->quit(*d->contexts.constFirst());
    for (const auto &context : qAsConst(d->contexts))
        context->close(QStringLiteral("the application has been stopped"));
    if (d->process && !d->process->end())
        d->endOrphans();
    return crash;
}

std::unique_ptr<RemoteApplication> RemoteApplication::start(const Start &start, QString *error)
{
    std::unique_ptr<RemoteApplication> application(new RemoteApplication);
    application->d->start = start;
    application->d->start.timeout = static_cast<int>(waitWithin(start.deadline, start.timeout));
    *error = application->d->launch();
    if (error->isEmpty())
        *error = application->d->waitForContext();
    return error->isEmpty() ? std::move(application) : nullptr;
}

QList<std::shared_ptr<RemoteContext>> RemoteApplication::contexts()
{
    d->update(0);
    // A copy: to ask one whether it is ready may add others.
    const QList<std::shared_ptr<RemoteContext>> known = d->contexts;
    QList<std::shared_ptr<RemoteContext>> ready;
    std::copy_if(known.cbegin(), known.cend(), std::back_inserter(ready),
                 [](const auto &context) { return context->isReady(); });
    return ready;
}

std::shared_ptr<RemoteContext> RemoteApplication::attach(const QString &name,
                                                         const QDeadlineTimer &deadline)
{
    d->update(0);
    d->forgetSleeping(hasEnded);
    const auto found =
        std::find_if(d->sleeping.begin(), d->sleeping.end(), [&name](const auto &caller) {
            return QFileInfo(caller.executable).fileName() == name;
        });
    if (found == d->sleeping.end())
        return nullptr;
    ConnectionOffer::Caller caller = std::move(*found);
    d->sleeping.erase(found);
    const std::shared_ptr<RemoteContext> context = d->add(std::move(caller));
    return d->waitUntilReady(*context, deadline).isEmpty() ? context : nullptr;
}

RemoteInspector *RemoteApplication::inspector()
{
    return d->contexts.constFirst()->inspector().get();
}

qint64 RemoteApplication::processId() const
{
    return d->contexts.constFirst()->processId();
}

bool RemoteApplication::isRunning()
{
    return d->contexts.constFirst()->isRunning();
}

QString RemoteApplication::standardOutput() const
{
    return decodedLocal8Bit(d->process->standardOutput());
}

QString RemoteApplication::standardError() const
{
    return decodedLocal8Bit(d->process->standardError());
}

} // namespace Morvex
