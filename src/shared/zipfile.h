#pragma once

#include "morvex_export.h"

#include <QString>

class QDateTime;
class QDir;
class QIODevice;

namespace Morvex {

/// Writes a new zip archive on any random-access device.
class MORVEX_EXPORT ZipFile
{
public:
    /// Opens @p device when it is not open. It must outlive this object, which closes it with the
    /// archive. The archive can't be opened when the device can't: each addition then fails.
    explicit ZipFile(QIODevice *device);
    virtual ~ZipFile();

    ZipFile(const ZipFile &) = delete;
    ZipFile &operator=(const ZipFile &) = delete;

    /// Reads @p device up to its end. Returns an error text, empty on success.
    [[nodiscard]] QString addFile(QIODevice *device, const QString &nameInZip,
                                  const QDateTime &time);

    /// Adds all files below the directory under their paths relative to it, and a link to a file as
    /// that file. Links to directories, links to nothing and what is neither file nor directory are
    /// left out. Returns an error text, empty on success.
    [[nodiscard]] QString addDirectoryContents(const QDir &root);

    /// Writes the directory of the archive, without which nobody can read it; the destructor does
    /// so too, but can't report a failure. Returns an error text, empty on success.
    [[nodiscard]] QString close();

private:
    void *m_zip;
};

} // namespace Morvex
