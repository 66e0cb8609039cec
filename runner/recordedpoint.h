#pragma once

#include "runner/pointmaker.h"

namespace Morvex {

/// Makes the file of a verification point while a test case is recorded, of an object of the
/// installed inspector as it is now. Returns an error text, empty on success.
[[nodiscard]] QString makeRecordedPoint(const QString &path, const PointRequest &request);

} // namespace Morvex
