#include "support/xmldocument.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <cstdarg>
#include <cstdio>

namespace MorvexTest {
namespace {

const xmlChar *xmlText(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

QString takeText(xmlChar *text)
{
    const QString result = QString::fromUtf8(reinterpret_cast<const char *>(text));
    xmlFree(text);
    return result;
}

void removeNamespaces(xmlNode *node)
{
    for (; node; node = node->next) {
        if (node->type != XML_ELEMENT_NODE)
            continue;
        node->ns = nullptr;
        removeNamespaces(node->children);
    }
}

void appendMessage(void *target, const char *format, ...)
{
    char message[1000];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    *static_cast<QString *>(target) += QString::fromUtf8(message);
}

std::shared_ptr<xmlXPathObject> evaluate(xmlDoc *document, const char *expression)
{
    if (!document)
        return {};
    const std::shared_ptr<xmlXPathContext> context(xmlXPathNewContext(document),
                                                   xmlXPathFreeContext);
    xmlXPathRegisterNs(context.get(), xmlText("ss"),
                       xmlText("urn:schemas-microsoft-com:office:spreadsheet"));
    xmlXPathRegisterNs(context.get(), xmlText("x2"), xmlText("http://www.morvex.org/XML2"));
    const std::shared_ptr<xmlXPathObject> found(
        xmlXPathEvalExpression(xmlText(expression), context.get()), xmlXPathFreeObject);
    if (!found)
        qFatal("Bad expression in a test: %s", expression);
    return found;
}

} // namespace

XmlDocument::XmlDocument(const QByteArray &content, Mode mode)
{
    const int options = XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE |
                        (mode == Recover ? XML_PARSE_RECOVER : 0);
    m_document.reset(xmlReadMemory(content.constData(), content.size(), nullptr, nullptr, options),
                     xmlFreeDoc);
    if (const xmlError *error = m_document ? nullptr : xmlGetLastError())
        m_error = QString("line %1: %2").arg(error->line).arg(error->message);
    else if (!m_document)
        m_error = "empty";
    else if (mode == NoNamespaces)
        removeNamespaces(m_document->children);
}

int XmlDocument::count(const char *expression) const
{
    const auto found = evaluate(m_document.get(), expression);
    return found && found->nodesetval ? found->nodesetval->nodeNr : 0;
}

QString XmlDocument::value(const char *expression) const
{
    const auto found = evaluate(m_document.get(), expression);
    return found ? takeText(xmlXPathCastToString(found.get())) : QString();
}

QStringList XmlDocument::texts(const char *expression) const
{
    const auto found = evaluate(m_document.get(), expression);
    QStringList texts;
    for (int i = 0; found && found->nodesetval && i < found->nodesetval->nodeNr; ++i)
        texts += takeText(xmlNodeGetContent(found->nodesetval->nodeTab[i]));
    return texts;
}

QStringList XmlDocument::attributes(const char *expression) const
{
    const auto found = evaluate(m_document.get(), expression);
    QStringList attributes;
    if (found && found->nodesetval && found->nodesetval->nodeNr > 0) {
        const xmlAttr *attribute = found->nodesetval->nodeTab[0]->properties;
        for (; attribute; attribute = attribute->next)
            attributes += QString::fromUtf8(reinterpret_cast<const char *>(attribute->name)) + '=' +
                          takeText(xmlNodeGetContent(reinterpret_cast<const xmlNode *>(attribute)));
    }
    return attributes;
}

QString XmlDocument::validate(const QString &schemaFile) const
{
    QString message;
    const std::shared_ptr<xmlSchemaParserCtxt> parser(
        xmlSchemaNewParserCtxt(qPrintable(schemaFile)), xmlSchemaFreeParserCtxt);
    xmlSchemaSetParserErrors(parser.get(), appendMessage, appendMessage, &message);
    const std::shared_ptr<xmlSchema> schema(xmlSchemaParse(parser.get()), xmlSchemaFree);
    if (!schema)
        return "no schema: " + message;
    const std::shared_ptr<xmlSchemaValidCtxt> validator(xmlSchemaNewValidCtxt(schema.get()),
                                                        xmlSchemaFreeValidCtxt);
    xmlSchemaSetValidErrors(validator.get(), appendMessage, appendMessage, &message);
    const int result = xmlSchemaValidateDoc(validator.get(), m_document.get());
    return result == 0 ? QString() : "invalid: " + message;
}

} // namespace MorvexTest
