#include "objectmodel/property.h"

namespace Morvex {

Property::~Property() = default;

} // namespace Morvex
