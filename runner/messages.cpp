#include "runner/messages.h"

#include <algorithm>
#include <cstdio>

namespace Morvex {

void printMessage(const QString &text)
{
    printLine(QLatin1String("morvexrunner: ") + text);
}

void printLine(const QString &text)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

QString shellQuoted(const QString &text)
{
    const auto isPlain = [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("_@%+=:,./-").contains(character);
    };
    if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

} // namespace Morvex
