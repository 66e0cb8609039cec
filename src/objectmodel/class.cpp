#include "objectmodel/class.h"

#include "objectmodel/methodlist.h"
#include "objectmodel/namespace.h"
#include "objectmodel/property.h"

namespace Morvex {

Module::~Module() = default;

Class::~Class() = default;

MethodList::~MethodList() = default;

Namespace::~Namespace() = default;

Property::~Property() = default;

bool Class::isSubclassOf(const Class *other) const
{
    const Class *ancestor = this;
    while (ancestor && ancestor != other)
        ancestor = ancestor->superClass();
    return ancestor;
}

} // namespace Morvex
