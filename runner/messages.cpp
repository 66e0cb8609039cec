#include "runner/messages.h"

#include <QRegularExpression>

#include <cstdio>

namespace Morvex {

void printMessage(const QString &text)
{
    printLine(QLatin1String("morvexrunner: ") + text);
}

void printLine(const QString &text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

QString shellQuoted(const QString &text)
{
    static const QRegularExpression plain(QStringLiteral("^[\\w@%+=:,./~-]+$"));
    if (plain.match(text).hasMatch())
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

} // namespace Morvex
