#include "test/suite/applicationwords.h"

namespace Morvex {

QStringList applicationWords(const QString &text)
{
    QStringList words;
    QString word;
    bool inQuotes = false;
    const auto finishWord = [&words, &word] {
        if (!word.isEmpty())
            words += word;
        word.clear();
    };
    for (const QChar character : text) {
        if (character == QLatin1Char('"'))
            inQuotes = !inQuotes;
        else if (character == QLatin1Char(' ') && !inQuotes)
            finishWord();
        else
            word += character;
    }
    finishWord();
    return words;
}

} // namespace Morvex
