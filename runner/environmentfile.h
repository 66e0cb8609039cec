#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

/// Checks "NAME=VALUE" lines of a file, and sets the variables when @p apply is true. Empty lines
/// and lines that begin with "#" are passed over. Returns an error text that names file and line,
/// empty on success.
[[nodiscard]] QString readEnvironmentFile(const QString &path, bool apply);

/// The file of a run: the one that was asked for, or that of the suite when it is there; empty for
/// none.
QString environmentFileOf(const QString &asked, const QString &ofSuite);

/// Sets the variables of the file, if one is named, and then those of the "NAME=VALUE" texts.
/// Returns an error text, empty on success.
[[nodiscard]] QString setEnvironmentVariables(const QString &file, const QStringList &assignments);

/// The names of those that were set so.
QStringList setVariables();

} // namespace Morvex
