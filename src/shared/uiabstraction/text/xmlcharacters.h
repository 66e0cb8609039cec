#pragma once

#include <QString>

namespace Morvex {

// What no XML 1.0 text can hold in any form. What becomes of it differs: reports show a mark,
// snapshots have U+FFFD, which a reader of one compares like any other character.

/// Tab, line feed and carriage return, the only legal ones below U+0020.
inline bool isXmlLayout(ushort unit)
{
    return unit == '\t' || unit == '\n' || unit == '\r';
}

/// U+FFFE, U+FFFF, and half a surrogate pair without its other half. Control characters are not
/// asked for.
inline bool isNoCharacter(const QString &text, int i)
{
    const QChar unit = text.at(i);
    if (unit.isHighSurrogate())
        return i + 1 >= text.size() || !text.at(i + 1).isLowSurrogate();
    if (unit.isLowSurrogate())
        return i == 0 || !text.at(i - 1).isHighSurrogate();
    return unit.unicode() >= 0xfffe;
}

} // namespace Morvex
