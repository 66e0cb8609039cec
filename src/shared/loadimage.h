#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QImage>

namespace Morvex {

/// Reads a picture of the format of that name; null when it is none. Nor does a picture of more
/// pixels than any screen has get read: a few bytes can promise billions of them.
MORVEX_EXPORT QImage loadImage(const QByteArray &bytes, const QByteArray &format);

/// Whether a picture would have more pixels than two of the largest screens.
MORVEX_EXPORT bool isTooLargePicture(const QSize &size);

/// Undoes qCompress. Empty for broken data, and for a promised size that no data of this length
/// can have.
MORVEX_EXPORT QByteArray uncompress(const QByteArray &bytes);

} // namespace Morvex
