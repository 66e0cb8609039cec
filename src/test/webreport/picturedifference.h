#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// Writes where the picture @p failedImage differs from the expected one beside it: a script of its
/// path and ".js", since a page that was opened from a file may not read pictures. Nothing is
/// written where one of the two can't be read, and where they differ in size. False when the
/// script could not be written.
MORVEX_EXPORT bool writePictureDifference(const QString &failedImage);

} // namespace Morvex
