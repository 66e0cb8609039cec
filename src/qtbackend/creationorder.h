#pragma once

#include <QObject>

namespace Morvex {

/// Begins to note in which order objects are made, for the rest of the process. From any thread.
void watchCreation();

/// The objects in the order in which they were made. Those that were there before watchCreation
/// come first, in the order in which this function met them.
QObjectList inCreationOrder(QObjectList objects);

} // namespace Morvex
