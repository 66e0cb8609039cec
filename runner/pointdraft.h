#pragma once

#include <QString>
#include <QTemporaryDir>

namespace Morvex {

/// The file of a verification point while it is made, with all that a check of it leaves beside it:
/// in a directory of its own beside the place of the point, where other runs find either no file or
/// a whole one. The directory is removed at the end.
class PointDraft
{
public:
    enum Outcome { Placed, Taken, Failed };

    /// Makes the directory, but no file yet.
    explicit PointDraft(const QString &pointPath);

    /// Why there can be no file; empty when there can.
    QString error() const;
    QString path() const { return m_path; }

    /// Moves the file to its place. Taken when there is one by now, which stays. After Failed
    /// @p error has a text.
    [[nodiscard]] Outcome takePlace(QString *error) const;

private:
    const QString m_pointPath;
    const QTemporaryDir m_dir;
    const QString m_path;
};

} // namespace Morvex
