#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

#include <QStringList>

#include <vector>

namespace Morvex {

/// A line of text for each frame, innermost first, without a line feed. What isn't printable in a
/// file name is escaped, so that a frame stays on its line.
MORVEX_EXPORT QStringList stackLines(const std::vector<LineInfo> &stack);

} // namespace Morvex
