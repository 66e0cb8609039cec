#include "remote/applicationenvironment.h"

#include "remote/applicationhome.h"
#include "remote/connectionoffer.h"
#include "remote/protocol/environmentnames.h"

#include <QFile>
#include <QMap>

namespace Morvex {
namespace {

void prepend(QProcessEnvironment *environment, const QString &name, const QString &value,
             QChar separator)
{
    const QString before = environment->value(name);
    // A runner below an application that is tested has it already.
    if (!before.split(separator).contains(value))
        environment->insert(name, before.isEmpty() ? value : value + separator + before);
}

bool hasDisplay(const QProcessEnvironment &environment)
{
    return !environment.value(QStringLiteral("DISPLAY")).isEmpty() ||
           !environment.value(QStringLiteral("WAYLAND_DISPLAY")).isEmpty();
}

} // namespace

void addAgent(QProcessEnvironment *target, const QString &agentDirectory,
              const ConnectionOffer &offer)
{
    QProcessEnvironment &environment = *target;
    prepend(target, QStringLiteral("QT_PLUGIN_PATH"), agentDirectory, QLatin1Char(':'));
    prepend(target, QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("morvexagent"),
            QLatin1Char(','));
    prepend(target, QStringLiteral("LD_PRELOAD"),
            agentDirectory + QLatin1String("/morvexpreload.so"), QLatin1Char(':'));
    environment.insert(QLatin1String(socketVariable), offer.socketPath());
    environment.insert(QLatin1String(tokenVariable), QString::fromLatin1(offer.token()));
    environment.insert(QLatin1String(directoryVariable), agentDirectory);
    const QString platform = QStringLiteral("QT_QPA_PLATFORM");
    if (environment.value(platform).isEmpty() && !hasDisplay(environment))
        environment.insert(platform, QStringLiteral("offscreen"));
    // There is no OpenGL for the other way to draw, and Qt Quick ends a program without.
    const QString quickBackend = QStringLiteral("QT_QUICK_BACKEND");
    if (environment.value(platform).startsWith(QLatin1String("offscreen")) &&
        environment.value(quickBackend).isEmpty())
        environment.insert(quickBackend, QStringLiteral("software"));
}

void makePrivate(QProcessEnvironment *environment, const ApplicationHome &home,
                 const QStringList &kept)
{
    // What lets it on to the display is in the home of the user.
    const QString authority =
        environment->value(QStringLiteral("HOME")) + QLatin1String("/.Xauthority");
    // Null for none.
    QMap<QString, QString> values{
        {QStringLiteral("HOME"), home.homeDirectory()},
        {QStringLiteral("TMPDIR"), home.temporaryDirectory()},
        {QStringLiteral("XDG_RUNTIME_DIR"), home.runtimeDirectory()},
        {QStringLiteral("SESSION_MANAGER"), QString()},
        // The session of the user has other instances.
        {QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), home.busAddress()},
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

} // namespace Morvex
