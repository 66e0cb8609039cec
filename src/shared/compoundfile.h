#pragma once

#include <QByteArray>
#include <QStringList>

namespace Morvex {

/// The first stream of one of these names in a compound file, the container of office documents of
/// old. Empty when @p file is no such file or has no such stream; where the file is damaged the
/// stream ends.
QByteArray readCompoundStream(const QByteArray &file, const QStringList &names);

} // namespace Morvex
