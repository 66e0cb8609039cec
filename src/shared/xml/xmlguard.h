#pragma once

#include "morvex_export.h"

#include <QString>

#include <string>

class TiXmlDocument;

namespace Morvex {

/// Parses @p xml, which may come from anywhere, as UTF-8. Returns an error text, empty on success;
/// the document has the place of the error (ErrorRow, ErrorCol) when the parser knows it.
[[nodiscard]] MORVEX_EXPORT QString parseXml(const std::string &xml, TiXmlDocument *document);

/// Reads a file from anywhere into a tree; its encoding is the parser's to find out. Returns an
/// error text, empty on success.
[[nodiscard]] MORVEX_EXPORT QString loadXmlFile(const QString &path, TiXmlDocument *document);

} // namespace Morvex
