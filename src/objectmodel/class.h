#pragma once

#include "morvex_export.h"

#include <QString>
#include <QStringList>

namespace Morvex {

class MethodList;
class Property;

/// Where the classes of a part of the toolkit are found in a script language.
class MORVEX_EXPORT Module
{
public:
    virtual ~Module();

    /// Empty when the classes need no prefix in @p language.
    virtual QString getModuleStr(const QString &language) const = 0;
};

/// A class of the object model. Classes, and what they hand out, belong to the inspector and live
/// as long as it does: they can be compared by address.
class MORVEX_EXPORT Class
{
public:
    virtual ~Class();

    virtual QString name() const = 0;

    /// Null for a class that is in no module.
    virtual const Module *module() const = 0;

    /// Null for a root class.
    virtual const Class *superClass() const = 0;

    /// Whether this class is @p other or derives from it. False for a null pointer.
    bool isSubclassOf(const Class *other) const;

    /// Null when objects of this class have no such property.
    virtual const Property *property(const QString &name) const = 0;
    virtual QStringList propertyNames() const = 0;

    /// Null when there is no such method.
    virtual const MethodList *methods(const QString &name) const = 0;
};

} // namespace Morvex
