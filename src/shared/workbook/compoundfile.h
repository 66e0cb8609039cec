#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QStringList>

namespace Morvex {

/// Whether the file begins like a compound file, the container of office documents of old.
MORVEX_EXPORT bool isCompoundFile(const QByteArray &file);

/// The first stream of one of these names in a compound file. Empty when @p file is no such file,
/// has no such stream, or has one in a storage, as embedded documents do, in front of it, which
/// the library that reads the texts would take; where the file is damaged the stream ends.
MORVEX_EXPORT QByteArray readCompoundStream(const QByteArray &file, const QStringList &names);

} // namespace Morvex
