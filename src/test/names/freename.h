#pragma once

#include <QString>

namespace Morvex {

/// The first of @p wanted, wanted_2, wanted_3 and so on that is not taken.
template <typename IsTaken>
QString firstFreeName(const QString &wanted, IsTaken isTaken)
{
    QString name = wanted;
    for (int number = 2; isTaken(name); ++number)
        name = QStringLiteral("%1_%2").arg(wanted, QString::number(number));
    return name;
}

} // namespace Morvex
