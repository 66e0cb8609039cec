#pragma once

#include "morvex_export.h"

class QString;

namespace Morvex {

/// Whether QRegExp can be given a regular expression from outside. It calls itself for each level
/// of parentheses, and keeps a copy of what is repeated for each repetition: a few characters can
/// end in an overflow of the stack, gigabytes or hours.
MORVEX_EXPORT bool isBoundedPattern(const QString &pattern);

} // namespace Morvex
