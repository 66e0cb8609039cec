#pragma once

#include "objectmodel/eventdata.h"

#include <QString>

#include <vector>

namespace Morvex {

using EventArguments = std::vector<EventDataArg>;

/// A recorded method under its name in scripts.
struct ScriptMethod
{
    const char *recorded;
    const char *printed;
    /// What it takes: "t" for a text, "n" for a number, "*" for either. Two forms at the most.
    const char *arguments = "";
    const char *otherArguments = "";
};

/// Null when scripts have no such method.
const ScriptMethod *scriptMethodOfObject(const QString &recorded);
/// Null when scripts have no such method of an item.
const ScriptMethod *scriptMethodOfItem(const QString &recorded);

/// Whether the argument is a position, a row or a column: scripts refuse any other number.
bool isWhole(const EventDataArg &argument);

/// Whether the arguments are of the form of a ScriptMethod.
bool fit(const EventArguments &arguments, const char *form);

} // namespace Morvex
