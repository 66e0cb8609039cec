#pragma once

#include "morvex_export.h"

#include <QImage>

namespace Morvex {

/// Makes all fully transparent pixels the same, so that what they hold does not count.
MORVEX_EXPORT void normalizeTransparency(QImage *image);

/// Whether the pixels are the same, whatever the formats of the two pictures are.
MORVEX_EXPORT bool haveEqualPixels(const QImage &a, const QImage &b);

} // namespace Morvex
