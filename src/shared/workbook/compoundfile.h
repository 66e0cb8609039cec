#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QStringList>

namespace Morvex {

/// Whether the file begins like a compound file, the container of office documents of old.
MORVEX_EXPORT bool isCompoundFile(const QByteArray &file);

/// The stream of the first of these names that a compound file has outside of the storages of
/// embedded documents, in any case. Empty when @p file is no such file or has no such stream; where
/// the file is damaged the stream ends.
MORVEX_EXPORT QByteArray readCompoundStream(const QByteArray &file, const QStringList &names);

} // namespace Morvex
