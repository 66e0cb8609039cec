#include "shared/xml/xmlparser.h"

#include <algorithm>
#include <expat.h>
#include <iterator>
#include <limits>
#include <memory>

namespace Morvex {
namespace {

const std::string_view predefined[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};

struct Parsing
{
    XmlContentHandler &handler;
    XML_Parser parser;
    std::string_view document;
    int depth = 0;
    bool hasDocumentType = false;
    QString refusal = QString();

    void refuse(const QString &reason)
    {
        if (refusal.isEmpty())
            refusal = reason;
        XML_StopParser(parser, XML_FALSE);
    }
};

Parsing &parsing(void *data)
{
    return *static_cast<Parsing *>(data);
}

// The first reference to an entity that is not predefined; empty when there is none.
std::string_view unknownEntity(std::string_view markup)
{
    for (std::size_t i = markup.find('&'); i < markup.size(); i = markup.find('&', i + 1)) {
        const std::string_view reference = markup.substr(i, markup.find(';', i) + 1 - i);
        const auto is = [reference](std::string_view known) { return reference == known; };
        if (reference.substr(0, 2) != "&#" &&
            std::none_of(std::begin(predefined), std::end(predefined), is))
            return reference;
    }
    return {};
}

void refuseUnknownEntity(Parsing &parsing, std::string_view markup)
{
    const std::string_view reference = unknownEntity(markup);
    if (!reference.empty())
        parsing.refuse(QStringLiteral("The entity '%1' is unknown.")
                           .arg(QString::fromUtf8(reference.data(), int(reference.size()))));
}

// With a document type, which could declare it elsewhere, the parser drops an unknown entity from
// an attribute in silence.
void checkAttributes(Parsing &parsing)
{
    const auto begin = static_cast<std::size_t>(XML_GetCurrentByteIndex(parsing.parser));
    const auto length = static_cast<std::size_t>(XML_GetCurrentByteCount(parsing.parser));
    refuseUnknownEntity(parsing, parsing.document.substr(begin, length));
}

void startElement(void *data, const XML_Char *name, const XML_Char **attributes)
{
    if (++parsing(data).depth > maxXmlDepth)
        parsing(data).refuse(xmlNestedTooDeep());
    else if (parsing(data).hasDocumentType)
        checkAttributes(parsing(data));
    if (parsing(data).refusal.isEmpty())
        parsing(data).handler.startElement(name, attributes);
}

void endElement(void *data, const XML_Char *)
{
    // That of an empty element comes even after its start has been refused.
    if (!parsing(data).refusal.isEmpty())
        return;
    --parsing(data).depth;
    parsing(data).handler.endElement();
}

void characters(void *data, const XML_Char *text, int length)
{
    parsing(data).handler.text({text, static_cast<std::size_t>(length)});
}

void declaration(void *data, const XML_Char *version, const XML_Char *encoding, int)
{
    parsing(data).handler.declaration(version ? version : "", encoding ? encoding : "");
}

void documentType(void *data, const XML_Char *name, const XML_Char *systemId,
                  const XML_Char *publicId, int hasInternalSubset)
{
    parsing(data).hasDocumentType = true;
    if (hasInternalSubset)
        parsing(data).refuse(QStringLiteral("The document type holds declarations."));
    else
        parsing(data).handler.documentType(name, publicId, systemId);
}

// In a text it hands the reference on here.
void otherMarkup(void *data, const XML_Char *text, int length)
{
    refuseUnknownEntity(parsing(data), {text, static_cast<std::size_t>(length)});
}

void setHandlers(XML_Parser parser)
{
    XML_SetElementHandler(parser, startElement, endElement);
    XML_SetCharacterDataHandler(parser, characters);
    XML_SetXmlDeclHandler(parser, declaration);
    XML_SetStartDoctypeDeclHandler(parser, documentType);
    XML_SetCdataSectionHandler(
        parser, [](void *data) { parsing(data).handler.startCData(); },
        [](void *data) { parsing(data).handler.endCData(); });
    XML_SetCommentHandler(
        parser, [](void *data, const XML_Char *text) { parsing(data).handler.comment(text); });
    XML_SetProcessingInstructionHandler(
        parser, [](void *data, const XML_Char *target, const XML_Char *text) {
            parsing(data).handler.processingInstruction(target, text);
        });
    XML_SetDefaultHandlerExpand(parser, otherMarkup);
}

} // namespace

XmlContentHandler::~XmlContentHandler() = default;

void XmlContentHandler::declaration(const char *, const char *) {}

void XmlContentHandler::documentType(const char *, const char *, const char *) {}

void XmlContentHandler::startCData() {}

void XmlContentHandler::endCData() {}

void XmlContentHandler::comment(const char *) {}

void XmlContentHandler::processingInstruction(const char *, const char *) {}

QString xmlNestedTooDeep()
{
    return QStringLiteral("The elements are nested deeper than %1 levels.").arg(maxXmlDepth);
}

XmlError parseXmlContent(const std::string &utf8, XmlContentHandler &handler)
{
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate("UTF-8"),
                                                                         XML_ParserFree);
    if (!parser || utf8.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return {QStringLiteral("The document is too large."), 1, 1};
    Parsing state{handler, parser.get(), utf8};
    XML_SetUserData(parser.get(), &state);
    setHandlers(parser.get());
    if (XML_Parse(parser.get(), utf8.data(), static_cast<int>(utf8.size()), XML_TRUE) ==
        XML_STATUS_OK)
        return {};
    const QString text = state.refusal.isEmpty()
                             ? QString::fromLatin1(XML_ErrorString(XML_GetErrorCode(parser.get())))
                             : state.refusal;
    return {text, static_cast<int>(XML_GetCurrentLineNumber(parser.get())),
            static_cast<int>(XML_GetCurrentColumnNumber(parser.get())) + 1};
}

} // namespace Morvex
