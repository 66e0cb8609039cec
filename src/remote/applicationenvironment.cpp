#include "remote/applicationenvironment.h"

#include "remote/connectionoffer.h"
#include "remote/protocol/environmentnames.h"

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

} // namespace Morvex
