#pragma once

#include <QProcessEnvironment>
#include <QStringList>

namespace Morvex {

class ConnectionOffer;

/// The environment of this process with what brings the agent into an application. What is there
/// already is added to. Without a display the windows of the application are drawn into memory.
/// @p agentDirectory is where the toolkit finds the agent.
QProcessEnvironment agentEnvironment(const QString &agentDirectory, const ConnectionOffer &offer);

/// Gives the application a home, settings and a session of its own below @p directory, so that it
/// meets neither another run nor the user's own instance. The variables in @p kept stay as they
/// are.
void makePrivate(QProcessEnvironment *environment, const QString &directory,
                 const QStringList &kept);

} // namespace Morvex
