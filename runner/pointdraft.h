#pragma once

#include <QString>

namespace Morvex {

/// The file of a verification point while it is made: beside the place of the point, where other
/// runs find either no file or a whole one. It is removed at the end unless it took that place.
class PointDraft
{
public:
    enum Outcome { Placed, Taken, Failed };

    /// Makes no file yet.
    explicit PointDraft(const QString &pointPath);
    ~PointDraft();

    PointDraft(const PointDraft &) = delete;
    PointDraft &operator=(const PointDraft &) = delete;

    QString path() const { return m_path; }

    /// Taken when there is a file by now, which stays. After Failed @p error has a text.
    [[nodiscard]] Outcome takePlace(QString *error);

private:
    const QString m_pointPath;
    const QString m_path;
};

} // namespace Morvex
