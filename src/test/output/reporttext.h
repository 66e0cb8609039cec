#pragma once

#include "morvex_export.h"

#include <QString>

#include <string>

namespace Morvex {

// No report may hold a surrogate without its partner, which has no UTF-8, nor U+FFFE and U+FFFF,
// which XML forbids in any form. U+FFFD is in their place.

/// The character that begins at @p position, which is moved past it.
inline char32_t takeReportCharacter(const QString &text, int *position)
{
    const QChar *const data = text.constData();
    const QChar unit = data[(*position)++];
    if (unit.unicode() >= 0xfffe)
        return QChar::ReplacementCharacter;
    if (!unit.isSurrogate())
        return unit.unicode();
    if (unit.isLowSurrogate() || *position == text.size() || !data[*position].isLowSurrogate())
        return QChar::ReplacementCharacter;
    return QChar::surrogateToUcs4(unit, data[(*position)++]);
}

/// For units below 0x80.
MORVEX_EXPORT void appendAscii(std::string &out, const QChar *text, int length);

/// UTF-8. Control characters stay.
MORVEX_EXPORT std::string reportUtf8(const QString &text);

} // namespace Morvex
