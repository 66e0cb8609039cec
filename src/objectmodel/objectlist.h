#pragma once

#include "objectmodel/object.h"

#include <vector>

namespace Morvex {

/// Arguments of a method.
using ObjectList = std::vector<SharedPtr<Object>>;

} // namespace Morvex
