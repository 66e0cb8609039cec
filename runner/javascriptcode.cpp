#include "runner/javascriptcode.h"

#include <QHash>
#include <QRegularExpression>
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

// Those of other scripts would be read as letters by no engine.
bool isDigit(QChar character)
{
    return character.isDigit() && character.unicode() < 128;
}

bool isWordCharacter(QChar character)
{
    return character.isLetter() || isDigit(character);
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

// Buttons show these alone.
QString wordOfSymbol(QChar symbol)
{
    static const QHash<QChar, QString> words{
        {u'!', QStringLiteral("exclamationMark")},
        {u'"', QStringLiteral("quote")},
        {u'#', QStringLiteral("hash")},
        {u'$', QStringLiteral("dollar")},
        {u'%', QStringLiteral("percent")},
        {u'&', QStringLiteral("ampersand")},
        {u'\'', QStringLiteral("apostrophe")},
        {u'(', QStringLiteral("openParenthesis")},
        {u')', QStringLiteral("closeParenthesis")},
        {u'*', QStringLiteral("asterisk")},
        {u'+', QStringLiteral("plus")},
        {u',', QStringLiteral("comma")},
        {u'-', QStringLiteral("minus")},
        {u'.', QStringLiteral("dot")},
        {u'/', QStringLiteral("slash")},
        {u':', QStringLiteral("colon")},
        {u';', QStringLiteral("semicolon")},
        {u'<', QStringLiteral("less")},
        {u'=', QStringLiteral("equals")},
        {u'>', QStringLiteral("greater")},
        {u'?', QStringLiteral("questionMark")},
        {u'@', QStringLiteral("at")},
        {u'[', QStringLiteral("openBracket")},
        {u'\\', QStringLiteral("backslash")},
        {u']', QStringLiteral("closeBracket")},
        {u'^', QStringLiteral("caret")},
        {u'_', QStringLiteral("underscore")},
        {u'{', QStringLiteral("openBrace")},
        {u'|', QStringLiteral("bar")},
        {u'}', QStringLiteral("closeBrace")},
        {u'~', QStringLiteral("tilde")},
        {u'\u00b1', QStringLiteral("plusMinus")},
        {u'\u00d7', QStringLiteral("times")},
        {u'\u00f7', QStringLiteral("dividedBy")},
        {u'\u2026', QStringLiteral("ellipsis")},
        {u'\u2190', QStringLiteral("left")},
        {u'\u2191', QStringLiteral("up")},
        {u'\u2192', QStringLiteral("right")},
        {u'\u2193', QStringLiteral("down")},
        {u'\u2212', QStringLiteral("minus")},
        {u'\u221a', QStringLiteral("squareRoot")},
    };
    return words.value(symbol);
}

QStringList wordsOfSymbols(QString text)
{
    text.replace(QLatin1String("..."), QChar(u'\u2026'));
    QStringList words;
    for (const QChar symbol : qAsConst(text)) {
        const QString word = wordOfSymbol(symbol);
        // Arrows are often made of two.
        if (!word.isEmpty() && (words.isEmpty() || words.last() != word))
            words += word;
    }
    return words;
}

// A key of the keyboard is marked within a word, too: "E&xit".
QString withoutMnemonic(QString text)
{
    static const QRegularExpression mark(QStringLiteral("&(?=\\w)"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    return text.replace(QLatin1String("&&"), QLatin1String(" ")).remove(mark);
}

// What is marked up has an end of something.
QString withoutTags(QString text)
{
    static const QRegularExpression tag(QStringLiteral("</?[a-zA-Z][^<>]*>"));
    return text.contains(QLatin1String("</")) ? text.replace(tag, QStringLiteral(" ")) : text;
}

QStringList wordsOfIdentifier(const QString &text)
{
    QStringList words = wordsOf(withoutMnemonic(withoutTags(text)));
    if (words.isEmpty())
        words = wordsOfSymbols(text);
    if (words.isEmpty())
        words = QStringList(QStringLiteral("object"));
    else if (std::all_of(words.at(0).begin(), words.at(0).end(), isDigit))
        words.prepend(QStringLiteral("number"));
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
    const int maxLength = 40;
    QString identifier;
    for (const QString &word : wordsOfIdentifier(text)) {
        if (!identifier.isEmpty() && identifier.size() + word.size() > maxLength)
            break;
        identifier += identifier.isEmpty() ? inLowerCase(word) : word.at(0).toUpper() + word.mid(1);
    }
    if (identifier.at(0).isDigit())
        identifier.prepend(QLatin1Char('_'));
    return identifier.left(maxLength);
}

} // namespace Morvex
