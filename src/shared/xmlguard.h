#pragma once

#include "morvex_export.h"

#include <QString>

#include <string>

class TiXmlDocument;

namespace Morvex {

/// How deep elements may lie in XML from outside: parsers that build a tree call themselves for
/// each level, and a file of nothing but start tags would overrun their stack.
const int maxXmlDepth = 500;

/// Whether elements in @p xml may lie more than @p maxDepth deep. Exact for well-formed text.
/// Parsers make different things of any other text, of document types and of processing
/// instructions; there the answer is whether there are more tags than that at all.
MORVEX_EXPORT bool xmlNestsDeeperThan(const std::string &xml, int maxDepth);

/// Parses @p xml, which may come from anywhere, as UTF-8. Returns an error text, empty on success;
/// the document has the place of the error (ErrorRow, ErrorCol) when the parser knows it.
MORVEX_EXPORT QString parseXml(const std::string &xml, TiXmlDocument *document);

/// The same for a file, whose encoding is the parser's to find out.
MORVEX_EXPORT QString loadXmlFile(const QString &path, TiXmlDocument *document);

} // namespace Morvex
