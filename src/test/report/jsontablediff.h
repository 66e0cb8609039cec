#pragma once

#include "morvex_export.h"
#include "test/tablediff.h"

#include <string>

namespace Morvex {

/// The differences of a table as a JSON array, in ASCII.
MORVEX_EXPORT std::string jsonOf(const FList<TableDiff::Element> &differences);

} // namespace Morvex
