#pragma once

#include <QProcessEnvironment>
#include <QStringList>

namespace Morvex {

class ApplicationHome;
class ConnectionOffer;

/// Adds what brings the agent into an application to what is there already. Without a display the
/// windows of the application are drawn into memory. @p agentDirectory is where the toolkit finds
/// the agent.
void addAgent(QProcessEnvironment *environment, const QString &agentDirectory,
              const ConnectionOffer &offer);

/// Gives the application a home, settings and a session of its own, so that it meets neither
/// another run nor the user's own instance. The variables in @p kept stay as they are.
void makePrivate(QProcessEnvironment *environment, const ApplicationHome &home,
                 const QStringList &kept);

} // namespace Morvex
