#pragma once

#include "morvex_export.h"

#include <QIODevice>
#include <QString>

class QFile;

namespace Morvex {

/// Opens @p file for reading, unless it is a pipe, which would keep the reader waiting, or anything
/// else that is no regular file. Returns the reason of a failure, empty on success.
[[nodiscard]] MORVEX_EXPORT QString openRegularFile(QFile *file,
                                                    QIODevice::OpenMode mode = QIODevice::ReadOnly);

} // namespace Morvex
