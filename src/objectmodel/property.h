#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

namespace Morvex {

/// A property of all objects of a class.
class MORVEX_EXPORT Property
{
public:
    virtual ~Property();

    virtual QString name() const = 0;

    /// The value of the property in @p object; null when it can't be read.
    virtual SharedPtr<Object> get(const SharedPtr<Object> &object) const = 0;

    /// Returns an error text, empty on success.
    [[nodiscard]] virtual QString set(const SharedPtr<Object> &object,
                                      const QVariant &value) const = 0;
};

} // namespace Morvex
