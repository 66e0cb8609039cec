#pragma once

#include "qtbackend/recordedtarget.h"

namespace Morvex {

/// Where something is let go that was dragged with the mouse, at a place of the widget. @p isData
/// is whether an application takes it there, as it decides: what is dropped on an item, or between
/// two of them, may differ. Without an object where nothing takes it.
RecordedTarget dropTarget(QWidget *widget, const QPoint &place, bool isData);

} // namespace Morvex
