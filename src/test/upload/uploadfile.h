#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Morvex {

/// The content of a regular file; nothing for one that can't be read or that is too large to be
/// sent. The latter is told on standard error.
std::optional<QByteArray> readUploadFile(const QString &path);

} // namespace Morvex
