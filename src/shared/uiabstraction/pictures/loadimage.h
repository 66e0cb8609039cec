#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QImage>

namespace Morvex {

/// Two screens of 7680x4320.
const qint64 maxPicturePixels = qint64(1) << 26;

/// Reads a picture of the format of that name; null when it is none. Nor does a picture of more
/// pixels than @p maxPixels get read: a few bytes can promise billions of them.
MORVEX_EXPORT QImage loadImage(const QByteArray &bytes, const QByteArray &format,
                               qint64 maxPixels = maxPicturePixels);

MORVEX_EXPORT qint64 pixelCount(const QSize &size);

/// Whether a picture would have more pixels than two of the largest screens.
MORVEX_EXPORT bool isTooLargePicture(const QSize &size);

} // namespace Morvex
