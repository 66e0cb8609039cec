#pragma once

#include "morvex_export.h"
#include "objectmodel/shared.h"
#include "objectmodel/sharedptr.h"

#include <QString>
#include <QVariant>

namespace Morvex {

class Class;

/// An object of the application under test, or a plain value on its way there or back. It names
/// the object by its id and stays valid when the object itself no longer exists.
class MORVEX_EXPORT Object : public Shared
{
public:
    /// The number under which application side functions know the object; 0 for a plain value.
    virtual int id() const = 0;

    /// Lives as long as the inspector. Null when the object does not exist any more.
    virtual const Class *objectClass() const = 0;

    /// Whether this object takes @p other for equal to itself. Not symmetric: the two may come
    /// from different parts of the model. False for a null pointer.
    virtual bool compare(const SharedPtr<Object> &other) const = 0;

    /// The value as a text, for messages. Of an object that is not a plain value its name.
    virtual QString valueText() const = 0;

    /// The value as the toolkit keeps it; invalid for an object that is not a plain value.
    virtual QVariant value() const = 0;
};

} // namespace Morvex
