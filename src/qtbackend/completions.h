#pragma once

class QObject;

namespace Morvex {

/// Closes the list of completions of a text field when the user is about to use something else, as
/// a press on that does. Any other list and any menu stays open.
void leaveCompletions(const QObject *object);

} // namespace Morvex
