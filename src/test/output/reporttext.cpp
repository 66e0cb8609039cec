#include "test/output/reporttext.h"

#include <algorithm>

namespace Morvex {
namespace {

char byte(char32_t bits)
{
    return static_cast<char>(bits);
}

// For characters from 0x80 on.
void appendUtf8(std::string &out, char32_t character)
{
    if (character < 0x800) {
        out += byte(0xc0 | character >> 6);
        out += byte(0x80 | (character & 0x3f));
    } else if (character < 0x10000) {
        out += byte(0xe0 | character >> 12);
        out += byte(0x80 | (character >> 6 & 0x3f));
        out += byte(0x80 | (character & 0x3f));
    } else {
        out += byte(0xf0 | character >> 18);
        out += byte(0x80 | (character >> 12 & 0x3f));
        out += byte(0x80 | (character >> 6 & 0x3f));
        out += byte(0x80 | (character & 0x3f));
    }
}

} // namespace

void appendAscii(std::string &out, const QChar *text, int length)
{
    const std::size_t size = out.size();
    out.resize(size + static_cast<std::size_t>(length));
    char *const begin = &out[size];
    for (int i = 0; i < length; ++i)
        begin[i] = text[i].toLatin1();
}

std::string reportUtf8(const QString &text)
{
    std::string utf8;
    utf8.reserve(static_cast<std::size_t>(text.size()));
    const QChar *const begin = text.constData();
    const QChar *const end = begin + text.size();
    for (const QChar *unit = begin; unit != end;) {
        const QChar *const asciiEnd =
            std::find_if(unit, end, [](QChar other) { return other.unicode() >= 0x80; });
        appendAscii(utf8, unit, static_cast<int>(asciiEnd - unit));
        unit = asciiEnd;
        if (unit != end) {
            int position = static_cast<int>(unit - begin);
            appendUtf8(utf8, takeReportCharacter(text, &position));
            unit = begin + position;
        }
    }
    return utf8;
}

} // namespace Morvex
