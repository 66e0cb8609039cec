#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QString>

#include <string_view>
#include <vector>

namespace Morvex {

struct FileWriteResult
{
    enum Outcome {
        Written,
        /// Opening the file for writing failed; nothing was changed.
        NotOpened,
        NotWritten
    };

    Outcome outcome;
    /// The system's reason, empty for Written.
    QString error;
};

/// Replaces the content of a file. A full disk does not cost the old content, nor does a crash
/// or a loss of power where the file can be replaced by a rename: a regular file with one link,
/// whose owner and group a new file has too, in a directory where one can be created. Its mode and
/// access control list are kept. Any other file is written in place. Links are followed; a pipe
/// without a reader can't be opened. A file that did not exist is removed when writing it fails.
[[nodiscard]] MORVEX_EXPORT FileWriteResult writeFileSafely(const QString &path,
                                                            const char *content, qint64 size);

[[nodiscard]] inline FileWriteResult writeFileSafely(const QString &path, const QByteArray &content)
{
    return writeFileSafely(path, content.constData(), content.size());
}

/// The same for a content in pieces, which may be parts of the file as it is now, mapped into
/// memory.
[[nodiscard]] MORVEX_EXPORT FileWriteResult
writeFileSafely(const QString &path, const std::vector<std::string_view> &pieces);

} // namespace Morvex
