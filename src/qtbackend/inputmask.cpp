#include "qtbackend/inputmask.h"

#include <QString>

namespace Morvex {

QVector<int> cursorStops(const QString &inputMask)
{
    const QString inputs = QStringLiteral("AaNnXx90Dd#HhBb");
    // Those that have no place of their own: they switch the case, or are reserved.
    const QString switches = QStringLiteral("><![]{}");
    // The character for blanks comes after it.
    const int end = inputMask.lastIndexOf(QLatin1Char(';'));
    QVector<int> stops{0};
    int place = 0;
    bool isEscaped = false;
    for (const QChar character : end < 0 ? inputMask : inputMask.left(end)) {
        if (!isEscaped && character == QLatin1Char('\\')) {
            isEscaped = true;
            continue;
        }
        const bool isInput = !isEscaped && inputs.contains(character);
        const bool isSwitch = !isEscaped && switches.contains(character);
        isEscaped = false;
        if (isInput && place > 0)
            stops += place;
        place += isSwitch ? 0 : 1;
    }
    stops += place;
    return stops;
}

} // namespace Morvex
