#include "runner/applications.h"

#include "remote/applicationhome.h"
#include "remote/remotecontext.h"
#include "remote/remoteinspector.h"
#include "runner/environmentfile.h"
#include "runner/processend.h"
#include "runner/uicoverage.h"
#include "shared/environment.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace Morvex {
namespace {

const int waitStepMs = 20;

QString installationPrefix()
{
    return QString::fromStdString(Environment::getVariable("MORVEX_PREFIX"));
}

} // namespace

Applications::Applications(const QStringList &searchDirs, const Settings &settings)
    : m_searchDirs(searchDirs)
    , m_settings(settings)
{
    m_searchDirs += installationPrefix() + QLatin1String("/lib/applications");
}

Applications::~Applications()
{
    m_hangs = nullptr;
    stopAll();
    if (m_installed && Inspector::self() == m_installed.get())
        Inspector::install(nullptr);
}

int Applications::start(const QStringList &command, const Options &options, QString *error)
{
    QStringList words = command.isEmpty() ? m_settings.suiteApplication : command;
    if (words.isEmpty()) {
        *error = QStringLiteral("no application was named");
        return -1;
    }
    const QString program = pathOf(words.constFirst(), error);
    if (program.isEmpty())
        return -1;
    words[0] = program;
    return launch(m_settings.launcher + words, program, options, error);
}

int Applications::startLauncher(const QStringList &command, const Options &options, QString *error)
{
    const QString program = pathOf(command.value(0), error);
    return program.isEmpty()
               ? -1
               : launch(QStringList{program} + command.mid(1), program, options, error);
}

void Applications::leave(int id)
{
    if (m_current == id)
        m_current = -1;
}

int Applications::launch(const QStringList &command, const QString &program, const Options &options,
                         QString *error)
{
    const QString prefix = installationPrefix();
    // One that could not be made may be possible by now.
    if (!m_home || !m_home->error().isEmpty())
        m_home = std::make_shared<ApplicationHome>(
            ApplicationHome::Options{prefix, m_settings.homeSeed, setVariables()});
    RemoteApplication::Start start;
    start.command = command;
    start.workingDirectory =
        options.workingDirectory.isEmpty() ? m_settings.workingDirectory : options.workingDirectory;
    if (start.workingDirectory == QLatin1String("@app"))
        start.workingDirectory = QFileInfo(program).path();
    start.variables = options.variables;
    start.keptVariables = setVariables();
    start.prefix = prefix;
    start.home = m_home;
    start.whiteList = m_settings.whiteList;
    start.hooksSubProcesses = m_settings.hooksSubProcesses;
    start.timeout = options.timeout;
    start.bound = m_settings.bound;
    start.deadline = m_settings.deadline;
    // No more: the script would go on within its own call.
    start.idle = m_settings.idle ? m_settings.idle : serveTermination;
    start.isCancelled = m_settings.isCancelled;
    start.hangs = [this](const QString &stack) {
        if (m_hangs)
            m_hangs(stack);
    };
    std::shared_ptr<RemoteApplication> application = RemoteApplication::start(start, error);
    if (!application)
        return -1;
    m_applications += application;
    update();
    for (Entry &entry : m_entries) {
        if (entry.application == application)
            return handOut(entry);
    }
    *error = QStringLiteral("'%1' has ended").arg(command.constFirst());
    return -1;
}

// Those that are new get a number.
void Applications::update()
{
    for (const auto &application : qAsConst(m_applications)) {
        for (const auto &context : application->contexts()) {
            const bool isKnown =
                std::any_of(m_entries.cbegin(), m_entries.cend(),
                            [&context](const Entry &entry) { return entry.context == context; });
            if (isKnown)
                continue;
            Entry entry;
            entry.id = ++m_lastId;
            entry.application = application;
            entry.context = context;
            m_entries += entry;
        }
    }
}

int Applications::handOut(Entry &entry)
{
    entry.isKnown = true;
    m_current = entry.id;
    inspector();
    return entry.id;
}

int Applications::attach(const QString &name, int timeout, QString *error)
{
    const QDeadlineTimer deadline(timeout);
    for (;;) {
        for (const auto &application : qAsConst(m_applications)) {
            const std::shared_ptr<RemoteContext> context = application->attach(name, deadline);
            update();
            for (Entry &entry : m_entries) {
                if (context && entry.context == context)
                    return handOut(entry);
            }
        }
        if (deadline.hasExpired())
            break;
        pauseScript(waitStepMs);
    }
    *error = QStringLiteral("no process of the applications that were started is one of '%1' that "
                            "can be tested")
                 .arg(name);
    return -1;
}

int Applications::waitForLaunch(int timeout)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        update();
        for (Entry &entry : m_entries) {
            if (!entry.isKnown && entry.context->isRunning())
                return handOut(entry);
        }
        if (timer.elapsed() >= timeout)
            return -1;
        pauseScript(waitStepMs);
    }
}

QList<int> Applications::contexts() const
{
    QList<int> ids;
    for (const Entry &entry : m_entries) {
        if (entry.application)
            ids += entry.id;
    }
    return ids;
}

QList<int> Applications::running()
{
    update();
    QList<int> ids;
    for (Entry &entry : m_entries) {
        if (!entry.application || !entry.context->isRunning())
            continue;
        entry.isKnown = true;
        ids += entry.id;
    }
    return ids;
}

bool Applications::setCurrent(int id)
{
    const Entry *entry = entryOf(id);
    if (!entry || !entry->application)
        return false;
    m_current = id;
    inspector();
    return true;
}

void Applications::stop(int id)
{
    const Entry *stopped = entryOf(id);
    if (!stopped || !stopped->application)
        return;
    const std::shared_ptr<RemoteApplication> application = stopped->application;
    const QString crash = application->end();
    const QString output = application->standardOutput();
    const QString errors = application->standardError();
    for (Entry &entry : m_entries) {
        if (entry.application != application)
            continue;
        entry.standardOutput = output;
        entry.standardError = errors;
        entry.isDeathSettled = true;
        entry.application.reset();
        if (entry.id == m_current)
            m_current = -1;
    }
    m_applications.removeOne(application);
    if (!crash.isEmpty() && m_crashesAtEnd)
        m_crashesAtEnd(crash);
}

void Applications::stopAll()
{
    QList<int> ids;
    for (const Entry &entry : qAsConst(m_entries))
        ids += entry.id;
    // Those that others have started come last.
    while (!ids.isEmpty())
        stop(ids.takeLast());
    m_applications.clear();
}

Applications::Entry *Applications::entryOf(int id)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [id](const Entry &entry) { return entry.id == id; });
    return found == m_entries.end() ? nullptr : &*found;
}

const Applications::Entry *Applications::entryOf(int id) const
{
    return const_cast<Applications *>(this)->entryOf(id);
}

std::shared_ptr<RemoteContext> Applications::context(int id) const
{
    const Entry *entry = entryOf(id);
    return entry ? entry->context : nullptr;
}

RemoteApplication *Applications::applicationOf(int id) const
{
    const Entry *entry = entryOf(id);
    return entry ? entry->application.get() : nullptr;
}

QString Applications::standardOutput(int id) const
{
    const Entry *entry = entryOf(id);
    if (!entry)
        return {};
    return entry->application ? entry->application->standardOutput() : entry->standardOutput;
}

QString Applications::standardError(int id) const
{
    const Entry *entry = entryOf(id);
    if (!entry)
        return {};
    return entry->application ? entry->application->standardError() : entry->standardError;
}

std::shared_ptr<RemoteInspector> Applications::inspector()
{
    Entry *entry = entryOf(m_current);
    std::shared_ptr<RemoteInspector> wanted;
    if (entry && entry->application)
        wanted = entry->context->inspector();
    if (wanted && wanted != m_installed) {
        Inspector::install(wanted.get());
        m_installed = wanted;
    }
    // Another one, too, of a process that has executed another program.
    if (wanted && entry->counted.lock() != wanted) {
        entry->counted = wanted;
        entry->countError = startUsageCount();
    }
    return wanted;
}

std::shared_ptr<RemoteInspector> Applications::inspectorOf(const SharedPtr<Object> &object)
{
    for (const Entry &entry : qAsConst(m_entries)) {
        const auto inspector = entry.application ? entry.context->inspector() : nullptr;
        if (inspector && inspector->owns(object))
            return inspector;
    }
    return nullptr;
}

QString Applications::countError()
{
    const Entry *entry = entryOf(m_current);
    return entry ? entry->countError : QString();
}

QList<Applications::Death> Applications::deaths()
{
    // Also those that the script has never looked for.
    update();
    QList<Death> deaths;
    for (const Entry &entry : qAsConst(m_entries)) {
        const QString end = entry.isDeathSettled ? QString() : entry.context->end();
        const bool isMet = entry.context->isEndMet();
        // How a process ends that the script has nothing to do with is its own affair.
        const bool isExpected =
            entry.isKnown ? entry.context->isEndOrderly() : !entry.context->hasCrashed();
        if (!end.isEmpty() && (isMet || !isExpected))
            deaths += Death{entry.id, end, isMet, entry.context->hasDumpedCore()};
    }
    return deaths;
}

void Applications::settleDeath(int context)
{
    Entry *entry = entryOf(context);
    if (!entry)
        return;
    entry->isDeathSettled = true;
    // Its objects are known not to be there.
    entry->context->close(entry->context->end());
}

// Empty, with an error, when there is none.
QString Applications::pathOf(const QString &name, QString *error) const
{
    QString path;
    for (const QString &dir : m_searchDirs) {
        const QString file = QDir(dir).absoluteFilePath(name);
        if (path.isEmpty() && QFileInfo(file).isFile())
            path = file;
    }
    if (path.isEmpty() && !name.contains(QLatin1Char('/')))
        path = QStandardPaths::findExecutable(name);
    if (path.isEmpty())
        *error = QStringLiteral("there is no application '%1' in %2, and no program of that name "
                                "in PATH")
                     .arg(name, m_searchDirs.join(QLatin1String(", ")));
    else if (!QFileInfo(path).isExecutable())
        *error = QStringLiteral("'%1' is not a program that may be run").arg(path);
    return error->isEmpty() ? path : QString();
}

} // namespace Morvex
