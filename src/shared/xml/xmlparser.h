#pragma once

#include "morvex_export.h"

#include <QString>

#include <string>
#include <string_view>

namespace Morvex {

/// How deep elements may be nested in XML from outside: readers that build a tree call themselves
/// for each level, and a file of nothing but start tags would overrun their stack.
const int maxXmlDepth = 500;

/// The error text for elements that are nested deeper.
MORVEX_EXPORT QString xmlNestedTooDeep();

/// Gets the content of a document in its order. Texts are UTF-8.
class MORVEX_EXPORT XmlContentHandler
{
public:
    virtual ~XmlContentHandler();

    /// @p attributes are names and values in turn, with a null pointer after the last.
    virtual void startElement(const char *name, const char *const *attributes) = 0;
    virtual void endElement() = 0;
    /// A part of a text; the next one may follow at once.
    virtual void text(std::string_view part) = 0;

    virtual void declaration(const char *version, const char *encoding);
    /// The ids are null when the document does not give them.
    virtual void documentType(const char *name, const char *publicId, const char *systemId);
    virtual void startCData();
    virtual void endCData();
    virtual void comment(const char *text);
    virtual void processingInstruction(const char *target, const char *data);
};

/// What is wrong with a document.
struct XmlError
{
    /// Empty when nothing is.
    QString text;
    /// Both count from 1.
    int line = 1;
    int column = 1;
};

/// Parses UTF-8 from outside, whatever encoding it declares, in a time in proportion to its
/// length. Refuses what is not well-formed, elements more than maxXmlDepth deep, references to
/// entities that are not predefined, and declarations within the document type: entities serve to
/// make a document grow.
MORVEX_EXPORT XmlError parseXmlContent(const std::string &utf8, XmlContentHandler &handler);

} // namespace Morvex
