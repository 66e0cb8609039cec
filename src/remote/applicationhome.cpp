#include "remote/applicationhome.h"

#include "remote/copytree.h"
#include "remote/watchedprocess.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QProcessEnvironment>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <sys/stat.h>

namespace Morvex {
namespace {

// More would leave too little for the names of sockets.
const int maxDirectoryLength = 50;
const int busTimeoutMs = 10000;

QString newDirectoryPath()
{
    QString parent = QDir(QDir::tempPath()).absolutePath();
    if (QFile::encodeName(parent).size() > maxDirectoryLength)
        parent = QStringLiteral("/tmp");
    const quint64 number = QRandomGenerator::system()->generate64();
    return parent + QStringLiteral("/morvex-%1").arg(number, 16, 16, QLatin1Char('0'));
}

QStringList busCommand(const ApplicationHome &home, const QStringList &kept)
{
    const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
    if (daemon.isEmpty() || kept.contains(QLatin1String("DBUS_SESSION_BUS_ADDRESS")))
        return {};
    return {daemon,
            QStringLiteral("--session"),
            QStringLiteral("--nofork"),
            QStringLiteral("--nopidfile"),
            QStringLiteral("--nosyslog"),
            QLatin1String("--address=") + home.busAddress()};
}

} // namespace

ApplicationHome::ApplicationHome(const Options &options)
    : m_directory(newDirectoryPath())
{
    WatchedProcess::Options keeper;
    keeper.watcher = options.prefix + QLatin1String("/lib/agent/morvexwatcher");
    keeper.directory = m_directory;
    keeper.command = busCommand(*this, options.keptVariables);
    keeper.environment = QProcessEnvironment::systemEnvironment();
    makePrivate(&keeper.environment, options.keptVariables);
    m_keeper = std::make_unique<WatchedProcess>(keeper);
    m_error = m_keeper->error();
    if (m_error.isEmpty())
        m_error = fill(options);
    if (m_error.isEmpty() && !keeper.command.isEmpty()) {
        m_keeper->allowStart();
        waitForBus();
    }
}

ApplicationHome::~ApplicationHome()
{
    m_keeper.reset();
    // The watcher has done this, unless somebody has killed it.
    QDir(m_directory).removeRecursively();
}

// Returns an error text, empty on success.
QString ApplicationHome::fill(const Options &options)
{
    for (const QString &path : {homeDirectory(), temporaryDirectory(), runtimeDirectory()})
        ::mkdir(QFile::encodeName(path).constData(), S_IRWXU);
    const QString failed =
        options.seed.isEmpty() ? QString() : copyTree(options.seed, homeDirectory());
    return failed.isEmpty()
               ? QString()
               : QStringLiteral("'%1' can't be copied to the home of the application").arg(failed);
}

// An application that comes first would go without it.
void ApplicationHome::waitForBus()
{
    QElapsedTimer timer;
    timer.start();
    const QString socket = runtimeDirectory() + QLatin1String("/bus");
    while (!QFile::exists(socket) && !m_keeper->hasEnded() && m_keeper->error().isEmpty() &&
           timer.elapsed() < busTimeoutMs)
        m_keeper->update(1);
}

void ApplicationHome::makePrivate(QProcessEnvironment *environment, const QStringList &kept) const
{
    // What lets it on to the display is in the home of the user.
    const QString authority =
        environment->value(QStringLiteral("HOME")) + QLatin1String("/.Xauthority");
    // Null for none.
    QMap<QString, QString> values{
        {QStringLiteral("HOME"), homeDirectory()},
        {QStringLiteral("TMPDIR"), temporaryDirectory()},
        {QStringLiteral("XDG_RUNTIME_DIR"), runtimeDirectory()},
        {QStringLiteral("SESSION_MANAGER"), QString()},
        // The session of the user has other instances.
        {QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress()},
    };
    for (const char *name :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
          // By these a theme of the desktop is chosen, which brings file dialogs that are not Qt's.
          "QT_QPA_PLATFORMTHEME", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
          "GNOME_DESKTOP_SESSION_ID"})
        values.insert(QLatin1String(name), QString());
    if (!environment->contains(QStringLiteral("XAUTHORITY")) && QFile::exists(authority))
        values.insert(QStringLiteral("XAUTHORITY"), authority);
    // The socket of the display is in the runtime directory of the user.
    const QString wayland = environment->value(QStringLiteral("WAYLAND_DISPLAY"));
    if (!wayland.isEmpty() && !wayland.startsWith(QLatin1Char('/')))
        values.insert(QStringLiteral("WAYLAND_DISPLAY"),
                      environment->value(QStringLiteral("XDG_RUNTIME_DIR")) + QLatin1Char('/') +
                          wayland);
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (kept.contains(it.key()))
            continue;
        if (it->isNull())
            environment->remove(it.key());
        else
            environment->insert(it.key(), *it);
    }
}

QString ApplicationHome::busAddress() const
{
    return QLatin1String("unix:path=") + runtimeDirectory() + QLatin1String("/bus");
}

QString ApplicationHome::newSocketPath()
{
    return QStringLiteral("%1/s%2").arg(m_directory, QString::number(++m_socketCount));
}

int ApplicationHome::lifeline() const
{
    return m_keeper->control();
}

} // namespace Morvex
