#pragma once

#include "morvex_export.h"

#include <QByteArray>

namespace Morvex {

/// Undoes qCompress. Empty for broken data, and for a promised size that no data of this length
/// can have.
MORVEX_EXPORT QByteArray uncompress(const QByteArray &bytes);

} // namespace Morvex
