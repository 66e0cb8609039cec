#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QString>

#include <functional>

class QIODevice;

namespace Morvex {

/// The path that is tried as the first, second, ... one; numbers begin at 1.
using NumberedPath = std::function<QString(int number)>;

struct NewFile
{
    /// The one that was tried last, also after an error.
    QString path;
    /// Empty on success.
    QString error;
};

/// Makes a file of what can be read from @p content, under the first path that nothing has: of two
/// processes that do so at once, each gets a path of its own. No file remains after an error.
[[nodiscard]] MORVEX_EXPORT NewFile writeNewFile(const NumberedPath &pathOf, QIODevice *content);

[[nodiscard]] MORVEX_EXPORT NewFile writeNewFile(const NumberedPath &pathOf,
                                                 const QByteArray &content);

} // namespace Morvex
