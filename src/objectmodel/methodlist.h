#pragma once

#include "morvex_export.h"
#include "objectmodel/objectlist.h"

namespace Morvex {

/// The methods of one name in a class; the arguments choose among them.
class MORVEX_EXPORT MethodList
{
public:
    virtual ~MethodList();

    /// False when the call fails or no method takes these arguments; @p result then stays as it
    /// was. @p self is null for a method of the global class. A method without a result gives a
    /// null pointer.
    virtual bool invoke(const SharedPtr<Object> &self, const ObjectList &arguments,
                        SharedPtr<Object> *result) const = 0;
};

} // namespace Morvex
