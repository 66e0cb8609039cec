#pragma once

#include "shared/uiabstraction/standardtype.h"

class QObject;
class QWidget;

namespace Morvex {

/// What a widget, or an action as an item of a menu, is to its users. Unknown for what just lays
/// out others.
UIAbstraction::StandardType standardTypeOf(const QObject *object);

/// Whether the widget is the part of a scroll area that scrolls, which its users don't know.
bool isViewport(const QWidget *widget);

} // namespace Morvex
