#pragma once

#include <QVariant>

namespace Morvex {

struct RecordedTarget;

/// The keys "item", "x" and "y", as far as the target has them.
QVariantMap reportedPlace(const RecordedTarget &target);

/// Adds the keys "button" and "modifiers" unless they are those of a plain click.
void addButtonTo(QVariantMap *place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

} // namespace Morvex
