#include "test/runnerinterface.h"

namespace Morvex {

RunnerInterface::~RunnerInterface() = default;

} // namespace Morvex
