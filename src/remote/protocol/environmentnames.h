#pragma once

namespace Morvex {

/// The variables by which an application knows that an agent is wanted, where its runner is, and
/// in which directory the libraries of the agent are.
inline constexpr char socketVariable[] = "MORVEX_AGENT_SOCKET";
inline constexpr char tokenVariable[] = "MORVEX_AGENT_TOKEN";
inline constexpr char directoryVariable[] = "MORVEX_AGENT_DIRECTORY";

} // namespace Morvex
