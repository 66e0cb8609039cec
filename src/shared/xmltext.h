#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QString>

namespace Morvex {

// Texts of scripts and applications hold anything: colours of a terminal, control characters,
// halves of surrogate pairs. XML 1.0 can't hold these, not even as references, and a reader refuses
// a file with one of them. All text that goes into an XML report goes through here.
//
// A character that can't stay is shown by a mark: "\x1b" for a control character, "\ufffe" for any
// other. Control characters from U+007F on are legal, but nobody sees them, so they are shown too.

/// Drops escape sequences of terminals as wholes and shows what XML can't hold. Tabs, line feeds
/// and carriage returns stay.
MORVEX_EXPORT QString replaceInvalidXMLcharacters(const QString &text);

/// The same for a text that has to stay on one line: "\t", "\n", "\r" and "\b" are shown as well.
MORVEX_EXPORT QString escapeControls(const QString &text);

/// For logs that hide nothing: as escapeControls, but escape sequences stay, and the mark of a
/// control character is "\u001b".
MORVEX_EXPORT QString escapeNonPrintable(const QString &text);

// Each appends UTF-8 and cleans the text by replaceInvalidXMLcharacters.

MORVEX_EXPORT void appendXmlText(QByteArray &out, const QString &text);
/// Without the quotes around it. Tabs and line breaks are written as references, since a reader
/// makes blanks of them otherwise.
MORVEX_EXPORT void appendXmlAttributeValue(QByteArray &out, const QString &text);
/// Without the brackets around the section. A terminator in the text is divided between two
/// sections.
MORVEX_EXPORT void appendXmlCData(QByteArray &out, const QString &text);

} // namespace Morvex
