#pragma once

#include <QByteArray>

namespace Morvex {

/// Gives a file another name in its file system, and replaces nothing. Returns 0 or an errno, which
/// is EEXIST when the name is taken. The file may still have its first name, too.
[[nodiscard]] int moveToFreePlace(const QByteArray &from, const QByteArray &to);

} // namespace Morvex
