#include "objectmodel/shared.h"

namespace Morvex {

Shared::~Shared() = default;

} // namespace Morvex
