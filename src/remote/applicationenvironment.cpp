#include "remote/applicationenvironment.h"

#include "remote/connectionoffer.h"
#include "remote/protocol/environmentnames.h"

namespace Morvex {
namespace {

void prepend(QProcessEnvironment *environment, const QString &name, const QString &value,
             QChar separator)
{
    const QString before = environment->value(name);
    environment->insert(name, before.isEmpty() ? value : value + separator + before);
}

bool hasDisplay(const QProcessEnvironment &environment)
{
    return !environment.value(QStringLiteral("DISPLAY")).isEmpty() ||
           !environment.value(QStringLiteral("WAYLAND_DISPLAY")).isEmpty();
}

} // namespace

QProcessEnvironment applicationEnvironment(const QString &agentDirectory,
                                           const ConnectionOffer &offer)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    prepend(&environment, QStringLiteral("QT_PLUGIN_PATH"), agentDirectory, QLatin1Char(':'));
    prepend(&environment, QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("morvexagent"),
            QLatin1Char(','));
    environment.insert(QLatin1String(socketVariable), offer.socketPath());
    environment.insert(QLatin1String(tokenVariable), QString::fromLatin1(offer.token()));
    const QString platform = QStringLiteral("QT_QPA_PLATFORM");
    if (environment.value(platform).isEmpty() && !hasDisplay(environment))
        environment.insert(platform, QStringLiteral("offscreen"));
    return environment;
}

} // namespace Morvex
