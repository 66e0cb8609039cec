#pragma once

#include <QString>

namespace Morvex {

/// The path of a file that is a part of this program; it can be read like any other file.
QString resourcePath(const QString &name);

} // namespace Morvex
