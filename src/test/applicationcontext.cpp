#include "test/applicationcontext.h"

namespace Morvex {

ApplicationContext::~ApplicationContext() = default;

} // namespace Morvex
