#pragma once

#include "morvex_export.h"

#include <QString>

#include <cstdio>

namespace Morvex {

/// A new directory, which is removed with all it holds at the end of the object's life.
class MORVEX_EXPORT TemporaryDir
{
public:
    /// Below the system's directory for temporary files.
    TemporaryDir();
    /// @p nameTemplate is the path up to the part of the name that is made up.
    explicit TemporaryDir(const QString &nameTemplate);
    ~TemporaryDir();

    TemporaryDir(const TemporaryDir &) = delete;
    TemporaryDir &operator=(const TemporaryDir &) = delete;

    bool isValid() const { return !m_path.isEmpty(); }
    /// Absolute; empty when the directory could not be created. Stays after a removal.
    QString path() const { return m_path; }
    QString errorString() const { return m_errorString; }

    /// True at first.
    bool autoRemove() const { return m_autoRemove; }
    void setAutoRemove(bool enabled) { m_autoRemove = enabled; }

    /// False only for an object that is not valid: what could not be removed shows in the log
    /// alone.
    bool remove();

private:
    void create(const QString &nameTemplate);

    QString m_path;
    QString m_errorString;
    bool m_autoRemove = true;
};

/// A file without a name, which ends when it is closed. Null, with a line on standard error, on
/// failure.
MORVEX_EXPORT std::FILE *tempFile();

/// A link below @p path is removed, what it points to is left alone; a @p path that is a link
/// itself is followed. A failure does not stop the removal of the rest. True when nothing is left.
MORVEX_EXPORT bool removeDirRecursively(const QString &path);

enum CopyDirectoryOption {
    FailOnExistingFile = 0,
    /// A target file that exists stays as it is and counts as copied.
    KeepExistingFile = 1
};

/// Copies a file, or a directory with all it holds into a directory that may exist. The first
/// failure ends the copy, with its text in @p error unless that is null; what was copied before it
/// stays.
[[nodiscard]] MORVEX_EXPORT bool copyDirectory(const QString &source, const QString &target,
                                               QString *error, CopyDirectoryOption option);

} // namespace Morvex
