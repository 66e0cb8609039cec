#pragma once

#include <QProcessEnvironment>

namespace Morvex {

class ConnectionOffer;

/// The environment of this process with what brings the agent into an application. What is there
/// already is added to. Without a display the windows of the application are drawn into memory.
/// @p agentDirectory is where the toolkit finds the agent.
QProcessEnvironment applicationEnvironment(const QString &agentDirectory,
                                           const ConnectionOffer &offer);

} // namespace Morvex
