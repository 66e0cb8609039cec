#include "objectmodel/class.h"

namespace Morvex {

Module::~Module() = default;

Class::~Class() = default;

bool Class::isSubclassOf(const Class *other) const
{
    const Class *ancestor = this;
    while (ancestor && ancestor != other)
        ancestor = ancestor->superClass();
    return ancestor;
}

} // namespace Morvex
