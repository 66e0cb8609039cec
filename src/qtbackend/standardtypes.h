#pragma once

#include "shared/uiabstraction/standardtype.h"

class QObject;

namespace Morvex {

/// What a widget, or an action as an item of a menu, is to its users. Unknown for what just lays
/// out others.
UIAbstraction::StandardType standardTypeOf(const QObject *object);

} // namespace Morvex
