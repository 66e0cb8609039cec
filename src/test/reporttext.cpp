#include "test/reporttext.h"

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

std::string reportUtf8(const QString &text)
{
    std::string utf8;
    utf8.reserve(static_cast<std::size_t>(text.size()));
    for (int position = 0; position < text.size();) {
        const QChar unit = text.at(position);
        if (unit.unicode() < 0x80) {
            utf8 += unit.toLatin1();
            ++position;
        } else {
            appendUtf8(utf8, takeReportCharacter(text, &position));
        }
    }
    return utf8;
}

} // namespace Morvex
