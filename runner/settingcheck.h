#pragma once

#include "objectmodel/object.h"

#include <QString>
#include <QVariant>

namespace Morvex {

/// What a script has set.
struct Setting
{
    QString property;
    QVariant wanted;
    /// What has the property.
    SharedPtr<Object> owner;
    /// What it held; null for nothing.
    SharedPtr<Object> before;
};

/// Why a property that holds @p held can't be set to @p wanted, to be read after its name; empty
/// when it may.
[[nodiscard]] QString whyUnsuitable(const QVariant &held, const QVariant &wanted);

/// Widgets leave out in silence what they can't show. Empty when the value was taken. A number or
/// a date has to be the one that is wanted, up to what the widget rounds; of any other value it is
/// enough that it changed something.
[[nodiscard]] QString whyNotTaken(const Setting &setting, const Object &after);

} // namespace Morvex
