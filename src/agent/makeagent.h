#pragma once

namespace Morvex {

class Agent;

/// An agent that is connected to the runner which wants one in this process. Null when there is no
/// such runner, or an agent was made before. The caller owns it.
Agent *makeAgent();

} // namespace Morvex
