#pragma once

#include <QByteArray>
#include <QString>

namespace Morvex {

/// A file beside another one, for what is to be written into that one: a crash or a full disk in
/// the middle of the write does not cost it.
class UnsavedCopy
{
public:
    /// Writes @p content, down to the disk, into the first free one of "PATH.unsaved",
    /// "PATH.unsaved_2" and so on: an earlier copy holds what an earlier write could not save.
    UnsavedCopy(const QString &path, const QByteArray &content);

    /// Empty when the copy could not be written.
    QString path() const { return m_path; }

    void remove();

private:
    QString m_path;
};

} // namespace Morvex
