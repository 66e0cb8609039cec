#pragma once

namespace Morvex {

/// The variables by which an application knows that an agent is wanted, and where its runner is.
inline constexpr char socketVariable[] = "MORVEX_AGENT_SOCKET";
inline constexpr char tokenVariable[] = "MORVEX_AGENT_TOKEN";

} // namespace Morvex
