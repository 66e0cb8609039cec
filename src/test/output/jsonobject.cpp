#include "test/output/jsonobject.h"

#include "test/output/reporttext.h"

#include <algorithm>

namespace Morvex {
namespace {

void appendHex(std::string &out, char32_t unit)
{
    static const char digits[] = "0123456789abcdef";
    const char escape[] = {'\\',
                           'u',
                           digits[unit >> 12 & 0xf],
                           digits[unit >> 8 & 0xf],
                           digits[unit >> 4 & 0xf],
                           digits[unit & 0xf]};
    out.append(escape, sizeof escape);
}

char shortEscape(char32_t character)
{
    switch (character) {
    case '"':
    case '\\':
        return static_cast<char>(character);
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return '\0';
    }
}

bool isPlain(char32_t character)
{
    return character >= 0x20 && character < 0x80 && character != '"' && character != '\\';
}

void appendEscaped(std::string &out, char32_t character)
{
    if (isPlain(character)) {
        out += static_cast<char>(character);
    } else if (const char escape = shortEscape(character)) {
        out += '\\';
        out += escape;
    } else if (character < 0x10000) {
        appendHex(out, character);
    } else {
        appendHex(out, QChar::highSurrogate(character));
        appendHex(out, QChar::lowSurrogate(character));
    }
}

int endOfPlain(const QString &text, int position)
{
    const QChar *const data = text.constData();
    while (position < text.size() && isPlain(data[position].unicode()))
        ++position;
    return position;
}

void append(std::string &out, QLatin1String text)
{
    out.append(text.data(), static_cast<std::size_t>(text.size()));
}

bool isBefore(QLatin1String a, QLatin1String b)
{
    return std::lexicographical_compare(a.data(), a.data() + a.size(), b.data(),
                                        b.data() + b.size());
}

} // namespace

void JsonObject::clear()
{
    m_members.clear();
    m_values.clear();
}

void JsonObject::add(QLatin1String key, const QString &text)
{
    begin(key);
    m_values += '"';
    for (int position = 0; position < text.size();) {
        const int plainEnd = endOfPlain(text, position);
        appendAscii(m_values, text.constData() + position, plainEnd - position);
        position = plainEnd;
        if (position < text.size())
            appendEscaped(m_values, takeReportCharacter(text, &position));
    }
    m_values += '"';
    finish();
}

void JsonObject::add(QLatin1String key, std::string_view asciiText)
{
    begin(key);
    m_values += '"';
    if (std::all_of(asciiText.begin(), asciiText.end(), isPlain)) {
        m_values += asciiText;
    } else {
        for (const char character : asciiText)
            appendEscaped(m_values, static_cast<unsigned char>(character));
    }
    m_values += '"';
    finish();
}

void JsonObject::add(QLatin1String key, QLatin1String text)
{
    add(key, std::string_view(text.data(), static_cast<std::size_t>(text.size())));
}

void JsonObject::addIfNotEmpty(QLatin1String key, const QString &text)
{
    if (!text.isEmpty())
        add(key, text);
}

void JsonObject::addIfNotEmpty(QLatin1String key, std::string_view asciiText)
{
    if (!asciiText.empty())
        add(key, asciiText);
}

void JsonObject::addInteger(QLatin1String key, int value)
{
    addValue(key, std::to_string(value));
}

void JsonObject::addLineNumber(int line)
{
    if (line >= 0)
        addInteger(QLatin1String("lineNo"), line);
}

void JsonObject::addValue(QLatin1String key, const std::string &json)
{
    begin(key);
    m_values += json;
    finish();
}

void JsonObject::write(std::string &out, bool strip)
{
    std::sort(m_members.begin(), m_members.end(),
              [](const Member &a, const Member &b) { return isBefore(a.key, b.key); });
    if (!strip)
        out += '{';
    for (const Member &member : m_members) {
        if (&member != &m_members.front())
            out += ',';
        out += '"';
        append(out, member.key);
        out += "\":";
        out.append(m_values, member.begin, member.end - member.begin);
    }
    if (!strip)
        out += '}';
}

void JsonObject::begin(QLatin1String key)
{
    m_members.push_back({key, m_values.size(), m_values.size()});
}

void JsonObject::finish()
{
    m_members.back().end = m_values.size();
}

std::string jsonArray(const std::vector<std::string> &values)
{
    std::string array = "[";
    for (const std::string &value : values) {
        if (array.size() > 1)
            array += ',';
        array += value;
    }
    return array + ']';
}

} // namespace Morvex
