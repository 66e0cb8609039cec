#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

/// Checks "NAME=VALUE" lines of a file, and sets the variables when @p apply is true. Empty lines
/// and lines that begin with "#" are passed over. Returns an error text that names file and line,
/// empty on success.
[[nodiscard]] QString readEnvironmentFile(const QString &path, bool apply);

/// Sets the variable of "NAME=VALUE".
void setEnvironmentVariable(const QString &assignment);

/// The names of those that were set so.
QStringList setVariables();

} // namespace Morvex
