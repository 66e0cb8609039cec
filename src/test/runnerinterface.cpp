#include "test/runnerinterface.h"

namespace Morvex {

ApplicationContext::~ApplicationContext() = default;

RunnerInterface::~RunnerInterface() = default;

} // namespace Morvex
