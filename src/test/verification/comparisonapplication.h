#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

namespace Morvex {

/// What a program that compares two pictures says.
struct ApplicationComparison
{
    bool matches = false;
    QString details;
    /// Why it could not be run; empty when it could.
    QString error;
};

/// Hands both pictures to the program of that name in the installation, as PNG files that are
/// removed afterwards. Waits for it without limit.
[[nodiscard]] ApplicationComparison runComparisonApplication(const QString &name,
                                                             const QStringList &parameters,
                                                             const QImage &actual,
                                                             const QImage &expected);

} // namespace Morvex
