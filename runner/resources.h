#pragma once

#include <QString>

namespace Morvex {

/// The path of a file that is part of this program; it can be read like any other file.
QString resourcePath(const QString &name);

/// The text of such a file. Ends the process when there is none: the program was built wrong.
QString resourceText(const QString &name);

} // namespace Morvex
