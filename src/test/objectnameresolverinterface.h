#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

namespace Morvex {

/// Turns the object names of verification points into objects.
class MORVEX_EXPORT ObjectNameResolverInterface
{
public:
    virtual ~ObjectNameResolverInterface();

    /// Null when the object does not exist; @p error, which may be null, then has a text. Lets an
    /// application in this process handle what is pending, so that it can change between attempts.
    virtual SharedPtr<Object> resolve(const QString &objectName, QString *error) = 0;

    /// Whether a verification point may name more than one object.
    virtual bool allowsSeveralObjects() const = 0;
};

} // namespace Morvex
