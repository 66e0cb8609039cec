#pragma once

#include "morvex_export.h"

class QVariant;

namespace Morvex {

/// Whether the value is of an integer type. Characters of the toolkit are none, those of C++ are.
MORVEX_EXPORT bool isWholeNumber(const QVariant &value);

/// Whether it is of an integer type with negative numbers.
MORVEX_EXPORT bool isSignedNumber(const QVariant &value);

/// The same of the number of a type.
MORVEX_EXPORT bool isWholeNumberType(int type);
MORVEX_EXPORT bool isSignedNumberType(int type);

} // namespace Morvex
