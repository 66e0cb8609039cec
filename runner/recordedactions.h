#pragma once

#include "objectmodel/eventdata.h"

#include <QVariant>

#include <vector>

namespace Morvex {

/// The events of a recording, from the actions that applications have reported, each with the
/// number of its "context": what was replaced or has not happened is left out, and what is typed
/// into an object without a break is one event, and each object that gets a password has a variable
/// of its own for it. What is no action is left out, too.
/// @p areObjectsWaitedFor is whether there are events that wait for what an object became late;
/// other events have no time then. @p arePausesKept is whether a pause is such a break.
std::vector<EventData> eventsOfActions(const QVariantList &actions, bool areObjectsWaitedFor,
                                       bool arePausesKept = false);

/// The action that says that an application was started.
QVariantMap startAction(int context);

} // namespace Morvex
