#include "shared/text/quotedtext.h"

namespace Morvex {
namespace {

// The character that a backslash before this one means; null when there is none.
QChar unescaped(QChar character)
{
    switch (character.unicode()) {
    case 'n':
        return QLatin1Char('\n');
    case 'r':
        return QLatin1Char('\r');
    case 't':
        return QLatin1Char('\t');
    case '"':
    case '\\':
        return character;
    default:
        return {};
    }
}

} // namespace

QString quoted(const QString &text)
{
    QString escaped = text;
    // The backslash goes first: the others bring new ones.
    escaped.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    escaped.replace(QLatin1String("\r"), QLatin1String("\\r"));
    escaped.replace(QLatin1String("\t"), QLatin1String("\\t"));
    escaped.replace(QLatin1String("\n"), QLatin1String("\\n"));
    escaped.replace(QLatin1String("\""), QLatin1String("\\\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QuotedTexts readQuoted(const QString &text)
{
    enum { Outside, Inside, Escape } state = Outside;
    QuotedTexts read;
    QString gathered;
    for (const QChar character : text) {
        switch (state) {
        case Outside:
            if (character == QLatin1Char('"'))
                state = Inside;
            break;
        case Inside:
            if (character == QLatin1Char('"')) {
                read.texts += gathered;
                gathered.clear();
                state = Outside;
            } else if (character == QLatin1Char('\\')) {
                state = Escape;
            } else {
                gathered += character;
            }
            break;
        case Escape:
            if (unescaped(character).isNull()) {
                read.unknownEscape = character;
                return read;
            }
            gathered += unescaped(character);
            state = Inside;
            break;
        }
    }
    read.isOpen = state != Outside;
    return read;
}

} // namespace Morvex
