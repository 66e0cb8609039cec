#include "objectmodel/namespace.h"

namespace Morvex {

Namespace::~Namespace() = default;

} // namespace Morvex
