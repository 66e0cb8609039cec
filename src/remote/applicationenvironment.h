#pragma once

#include <QProcessEnvironment>

namespace Morvex {

class ConnectionOffer;

/// Adds what brings the agent into an application to what is there already. Without a display the
/// windows of the application are drawn into memory. @p agentDirectory is where the toolkit finds
/// the agent.
void addAgent(QProcessEnvironment *environment, const QString &agentDirectory,
              const ConnectionOffer &offer);

} // namespace Morvex
