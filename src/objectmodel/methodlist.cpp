#include "objectmodel/methodlist.h"

namespace Morvex {

MethodList::~MethodList() = default;

} // namespace Morvex
