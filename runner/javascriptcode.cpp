#include "runner/javascriptcode.h"

#include <QStringList>

#include <algorithm>

namespace Morvex {
namespace {

bool isLetter(QChar character)
{
    return character.isLetter() || character == QLatin1Char('_') || character == QLatin1Char('$');
}

// Characters outside of the basic plane come in two halves, which are no letters: such names are
// written in quotes.
bool isIdentifier(const QString &text)
{
    return !text.isEmpty() && isLetter(text.at(0)) &&
           std::all_of(text.begin(), text.end(),
                       [](QChar each) { return isLetter(each) || each.isDigit(); });
}

bool needsEscape(QChar character)
{
    // The two line separators end a line of JavaScript; a half of a character has no UTF-8.
    return character.category() == QChar::Other_Control || character == QChar(0x2028) ||
           character == QChar(0x2029) || character == QChar(QChar::ByteOrderMark);
}

QString escapeSequence(QChar character)
{
    switch (character.unicode()) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
}

bool isLoneSurrogate(const QString &text, int index)
{
    const QChar character = text.at(index);
    if (character.isHighSurrogate())
        return index + 1 == text.size() || !text.at(index + 1).isLowSurrogate();
    return character.isLowSurrogate() && (index == 0 || !text.at(index - 1).isHighSurrogate());
}

QString keyCode(const QString &key)
{
    // In a literal this key sets the prototype, unless it is computed.
    if (key == QLatin1String("__proto__"))
        return QStringLiteral("[\"__proto__\"]");
    return isIdentifier(key) ? key : javaScriptString(key);
}

// Vowel signs and accents of their own.
bool isCombining(QChar character)
{
    return character.category() == QChar::Mark_NonSpacing ||
           character.category() == QChar::Mark_SpacingCombining;
}

// Digits of any script would be read as letters by no engine.
bool isWordCharacter(QChar character)
{
    return character.isLetter() || (character.isDigit() && character.unicode() < 128);
}

QStringList wordsOf(const QString &text)
{
    QStringList words;
    bool isInWord = false;
    for (const QChar character : text) {
        const bool isOfWord = isWordCharacter(character) || (isInWord && isCombining(character));
        if (isOfWord && isInWord)
            words.last() += character;
        else if (isOfWord)
            words += QString(character);
        isInWord = isOfWord;
    }
    return words;
}

// "OK" and "CSV" as a whole, of other words the first letter.
QString inLowerCase(const QString &word)
{
    return word == word.toUpper() ? word.toLower() : word.at(0).toLower() + word.mid(1);
}

} // namespace

QString javaScriptString(const QString &text)
{
    QString literal(QLatin1Char('"'));
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character == QLatin1Char('"') || character == QLatin1Char('\\'))
            literal += QLatin1Char('\\');
        if (needsEscape(character) || isLoneSurrogate(text, i))
            literal += escapeSequence(character);
        else
            literal += character;
    }
    return literal + QLatin1Char('"');
}

QString javaScriptMember(const QString &object, const QString &key)
{
    return isIdentifier(key) ? object + QLatin1Char('.') + key
                             : object + QLatin1Char('[') + javaScriptString(key) + QLatin1Char(']');
}

QString javaScriptObject(const QMap<QString, QString> &members)
{
    QStringList parts;
    for (auto member = members.begin(); member != members.end(); ++member) {
        parts += keyCode(member.key()) + QLatin1String(": ") + member.value();
    }
    return QLatin1Char('{') + parts.join(QLatin1String(", ")) + QLatin1Char('}');
}

QString javaScriptIdentifier(const QString &text)
{
    QString identifier;
    for (const QString &word : wordsOf(text))
        identifier += identifier.isEmpty() ? inLowerCase(word) : word.at(0).toUpper() + word.mid(1);
    if (identifier.isEmpty())
        return QStringLiteral("object");
    return identifier.at(0).isDigit() ? QLatin1Char('_') + identifier : identifier;
}

} // namespace Morvex
