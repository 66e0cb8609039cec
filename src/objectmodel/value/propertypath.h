#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

#include <QString>
#include <QStringList>

namespace Morvex {

/// The names of the properties that a path such as "size.width" leads through. Empty ones don't
/// count.
MORVEX_EXPORT QStringList propertySteps(const QString &path);

/// Why a path of properties leads nowhere.
struct MissingProperty
{
    /// The step that can't be taken.
    QString name;
    /// Whether there is such a property, which then has no value.
    bool exists = false;
};

/// What the steps lead to from @p start, which may be null; without steps @p start itself. Null
/// when one can't be taken, which @p missing, when it is not null, then names.
MORVEX_EXPORT SharedPtr<Object> followProperties(const SharedPtr<Object> &start,
                                                 const QStringList &steps,
                                                 MissingProperty *missing = nullptr);

} // namespace Morvex
