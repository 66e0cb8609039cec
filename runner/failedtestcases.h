#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

/// The failed test cases of the last run of each suite, kept in the user's settings directory.
class FailedTestCases
{
public:
    /// @p suiteDir may be reached over links; its real path counts.
    explicit FailedTestCases(const QString &suiteDir);

    /// Whether a run of the suite was recorded at all.
    bool isRecorded() const;

    /// Sorted as in that run. Empty when there is no record.
    QStringList read() const;

    /// Replaces the record as a whole. An error text, empty on success.
    [[nodiscard]] QString write(const QStringList &testCases) const;

private:
    QString m_suitePath;
    QString m_fileName;
};

} // namespace Morvex
