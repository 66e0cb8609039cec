#include "shared/xmltext.h"

#include "shared/uiabstraction/text/xmlcharacters.h"

#include <QLatin1String>

namespace Morvex {
namespace {

const ushort escapeCharacter = 0x1b;
const ushort bell = 0x07;

struct CleaningRules
{
    bool dropsSequences;
    bool keepsLayout;
    QLatin1String controlPrefix;
    int controlDigits;
};

const CleaningRules textRules{true, true, QLatin1String("\\x"), 2};
const CleaningRules lineRules{true, false, QLatin1String("\\x"), 2};
const CleaningRules logRules{false, false, QLatin1String("\\u"), 4};

bool isControl(ushort unit)
{
    return unit < 0x20 || (unit >= 0x7f && unit <= 0x9f);
}

bool isToBeReplaced(const QString &text, int i, const CleaningRules &rules)
{
    const ushort unit = text.at(i).unicode();
    if (unit < 0x7f)
        return unit < 0x20 && !(rules.keepsLayout && isXmlLayout(unit));
    return isControl(unit) || isNoCharacter(text, i);
}

int nextToBeReplaced(const QString &text, int from, const CleaningRules &rules)
{
    while (from < text.size() && !isToBeReplaced(text, from, rules))
        ++from;
    return from;
}

bool isBetween(const QString &text, int i, ushort first, ushort last)
{
    return i < text.size() && text.at(i).unicode() >= first && text.at(i).unicode() <= last;
}

int skip(const QString &text, int i, ushort first, ushort last)
{
    while (isBetween(text, i, first, last))
        ++i;
    return i;
}

// The ends of sequences give -1 when the sequence is not complete. None looks further than the next
// control character, so that a text full of beginnings takes no longer than any other.

int endOfControlSequence(const QString &text, int i)
{
    const int final = skip(text, skip(text, i, 0x30, 0x3f), 0x20, 0x2f);
    return isBetween(text, final, 0x40, 0x7e) ? final + 1 : -1;
}

int endOfSystemCommand(const QString &text, int i)
{
    while (i < text.size() && !isControl(text.at(i).unicode()))
        ++i;
    if (isBetween(text, i, bell, bell))
        return i + 1;
    const bool isTerminated =
        isBetween(text, i, escapeCharacter, escapeCharacter) && isBetween(text, i + 1, '\\', '\\');
    return isTerminated ? i + 2 : -1;
}

int endOfShortSequence(const QString &text, int i)
{
    const int final = skip(text, i, 0x20, 0x2f);
    return final > i && isBetween(text, final, 0x30, 0x7e) ? final + 1 : -1;
}

// Where the terminal's escape sequence that begins at i ends; -1 when none begins there.
int endOfSequence(const QString &text, int i)
{
    if (text.at(i).unicode() != escapeCharacter || i + 1 >= text.size())
        return -1;
    switch (text.at(i + 1).unicode()) {
    case '[':
        return endOfControlSequence(text, i + 2);
    case ']':
        return endOfSystemCommand(text, i + 2);
    default:
        return endOfShortSequence(text, i + 1);
    }
}

QLatin1String nameOf(ushort unit)
{
    switch (unit) {
    case '\b':
        return QLatin1String("\\b");
    case '\t':
        return QLatin1String("\\t");
    case '\n':
        return QLatin1String("\\n");
    case '\r':
        return QLatin1String("\\r");
    default:
        return {};
    }
}

void appendMark(QString &out, ushort unit, const CleaningRules &rules)
{
    const QLatin1String name = nameOf(unit);
    const QString hex = QString::number(unit, 16);
    if (!name.isEmpty())
        out += name;
    else if (isControl(unit))
        out += rules.controlPrefix + hex.rightJustified(rules.controlDigits, QLatin1Char('0'));
    else
        out += QLatin1String("\\u") + hex;
}

QString cleaned(const QString &text, const CleaningRules &rules)
{
    int next = nextToBeReplaced(text, 0, rules);
    if (next == text.size())
        return text;
    QString result;
    result.reserve(text.size());
    int copied = 0;
    while (next < text.size()) {
        result += QStringView(text).mid(copied, next - copied);
        const int end = rules.dropsSequences ? endOfSequence(text, next) : -1;
        if (end < 0)
            appendMark(result, text.at(next).unicode(), rules);
        copied = end < 0 ? next + 1 : end;
        next = nextToBeReplaced(text, copied, rules);
    }
    return result += QStringView(text).mid(copied);
}

QLatin1String textReference(QChar character)
{
    switch (character.unicode()) {
    case '&':
        return QLatin1String("&amp;");
    case '<':
        return QLatin1String("&lt;");
    case '>':
        return QLatin1String("&gt;");
    case '\r':
        return QLatin1String("&#13;");
    default:
        return {};
    }
}

QLatin1String attributeReference(QChar character)
{
    switch (character.unicode()) {
    case '"':
        return QLatin1String("&quot;");
    case '\t':
        return QLatin1String("&#9;");
    case '\n':
        return QLatin1String("&#10;");
    default:
        return textReference(character);
    }
}

template <typename ReferenceOf>
void appendWithReferences(QByteArray &out, const QString &text, ReferenceOf referenceOf)
{
    const QString clean = cleaned(text, textRules);
    int copied = 0;
    for (int i = 0; i < clean.size(); ++i) {
        const QLatin1String reference = referenceOf(clean.at(i));
        if (reference.isEmpty())
            continue;
        out += QStringView(clean).mid(copied, i - copied).toUtf8();
        out.append(reference.data(), reference.size());
        copied = i + 1;
    }
    out += QStringView(clean).mid(copied).toUtf8();
}

} // namespace

QString replaceInvalidXMLcharacters(const QString &text)
{
    return cleaned(text, textRules);
}

QString escapeControls(const QString &text)
{
    return cleaned(text, lineRules);
}

QString escapeNonPrintable(const QString &text)
{
    return cleaned(text, logRules);
}

void appendXmlText(QByteArray &out, const QString &text)
{
    appendWithReferences(out, text, textReference);
}

void appendXmlAttributeValue(QByteArray &out, const QString &text)
{
    appendWithReferences(out, text, attributeReference);
}

void appendXmlCData(QByteArray &out, const QString &text)
{
    QByteArray bytes = cleaned(text, textRules).toUtf8();
    if (bytes.contains("]]>"))
        bytes.replace("]]>", "]]]]><![CDATA[>");
    out += bytes;
}

} // namespace Morvex
