#pragma once

#include "morvex_export.h"

#include <QString>

#include <string>

class TiXmlDocument;

namespace Morvex {

/// How deep elements may lie in XML from outside: parsers that build a tree call themselves for
/// each level, and a file of nothing but start tags would overrun their stack.
const int maxXmlDepth = 500;

/// Whether the start tags in @p xml lie more than @p maxDepth deep. Markup in comments, CDATA and
/// attribute values does not count. Works on ill-formed text too.
MORVEX_EXPORT bool xmlNestsDeeperThan(const std::string &xml, int maxDepth);

/// Parses @p xml, which may come from anywhere. Returns an error text, empty on success; the
/// document has the place of the error (ErrorRow, ErrorCol) when it comes from the parser.
MORVEX_EXPORT QString parseXml(const std::string &xml, TiXmlDocument *document);

/// The same for a file.
MORVEX_EXPORT QString loadXmlFile(const QString &path, TiXmlDocument *document);

} // namespace Morvex
