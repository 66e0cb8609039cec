#pragma once

#include "morvex_qtbackend_export.h"

class QVariant;

namespace Morvex {

/// Whether the value is of an integer type. Characters of the toolkit are none, those of C++ are.
MORVEX_QTBACKEND_EXPORT bool isWholeNumber(const QVariant &value);

/// Whether it is of an integer type with negative numbers.
bool isSignedNumber(const QVariant &value);

} // namespace Morvex
