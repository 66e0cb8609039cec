#pragma once

#include "shared/imagemask.h"

class QDomElement;

namespace Morvex {

/// A rectangle of a mask as the files of verification points hold it.
ImageMask::MaskRect maskRectOf(const QDomElement &element);

} // namespace Morvex
