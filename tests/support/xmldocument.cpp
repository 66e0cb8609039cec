#include "support/xmldocument.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <cstdarg>
#include <cstdio>

namespace MorvexTest {
namespace {

template <auto Free>
struct Deleter
{
    template <typename T>
    void operator()(T *object) const
    {
        Free(object);
    }
};

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

} // namespace

struct XmlDocument::Private
{
    std::unique_ptr<xmlDoc, Deleter<xmlFreeDoc>> document;
    QString error;

    using Result = std::unique_ptr<xmlXPathObject, Deleter<xmlXPathFreeObject>>;

    Result evaluate(const char *expression) const;

    template <typename Visit>
    void visit(const char *expression, Visit visitNode) const;
};

XmlDocument::Private::Result XmlDocument::Private::evaluate(const char *expression) const
{
    if (!document)
        return {};
    const std::unique_ptr<xmlXPathContext, Deleter<xmlXPathFreeContext>> context(
        xmlXPathNewContext(document.get()));
    xmlXPathRegisterNs(context.get(), xmlText("ss"),
                       xmlText("urn:schemas-microsoft-com:office:spreadsheet"));
    xmlXPathRegisterNs(context.get(), xmlText("x2"), xmlText("http://www.morvex.org/XML2"));
    Result found(xmlXPathEvalExpression(xmlText(expression), context.get()));
    if (!found)
        qFatal("Bad expression in a test: %s", expression);
    return found;
}

template <typename Visit>
void XmlDocument::Private::visit(const char *expression, Visit visitNode) const
{
    const Result found = evaluate(expression);
    for (int i = 0; found && found->nodesetval && i < found->nodesetval->nodeNr; ++i)
        visitNode(found->nodesetval->nodeTab[i]);
}

XmlDocument::XmlDocument(const QByteArray &content, Mode mode)
    : d(std::make_unique<Private>())
{
    const int options = XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE |
                        (mode == Recover ? XML_PARSE_RECOVER : 0);
    d->document.reset(
        xmlReadMemory(content.constData(), content.size(), nullptr, nullptr, options));
    if (const xmlError *error = d->document ? nullptr : xmlGetLastError())
        d->error = QString("line %1: %2").arg(error->line).arg(error->message);
    else if (!d->document)
        d->error = "empty";
    if (d->document && mode == NoNamespaces)
        removeNamespaces(d->document->children);
}

XmlDocument::~XmlDocument() = default;

QString XmlDocument::error() const
{
    return d->error;
}

int XmlDocument::count(const char *expression) const
{
    int count = 0;
    d->visit(expression, [&count](xmlNode *) { ++count; });
    return count;
}

QString XmlDocument::value(const char *expression) const
{
    const Private::Result found = d->evaluate(expression);
    return found ? takeText(xmlXPathCastToString(found.get())) : QString();
}

QString XmlDocument::text(const char *expression) const
{
    return texts(expression).value(0);
}

QStringList XmlDocument::texts(const char *expression) const
{
    QStringList texts;
    d->visit(expression, [&texts](xmlNode *node) { texts += takeText(xmlNodeGetContent(node)); });
    return texts;
}

QStringList XmlDocument::attributes(const char *expression) const
{
    QStringList attributes;
    d->visit(expression, [&attributes](xmlNode *node) {
        if (!attributes.isEmpty())
            return;
        for (xmlAttr *attribute = node->properties; attribute; attribute = attribute->next)
            attributes += QString::fromUtf8(reinterpret_cast<const char *>(attribute->name)) + '=' +
                          takeText(xmlNodeGetContent(reinterpret_cast<xmlNode *>(attribute)));
    });
    return attributes;
}

QString XmlDocument::validate(const QString &schemaFile) const
{
    QString message;
    const std::unique_ptr<xmlSchemaParserCtxt, Deleter<xmlSchemaFreeParserCtxt>> parser(
        xmlSchemaNewParserCtxt(qPrintable(schemaFile)));
    xmlSchemaSetParserErrors(parser.get(), appendMessage, appendMessage, &message);
    const std::unique_ptr<xmlSchema, Deleter<xmlSchemaFree>> schema(xmlSchemaParse(parser.get()));
    if (!schema)
        return "no schema: " + message;
    const std::unique_ptr<xmlSchemaValidCtxt, Deleter<xmlSchemaFreeValidCtxt>> validator(
        xmlSchemaNewValidCtxt(schema.get()));
    xmlSchemaSetValidErrors(validator.get(), appendMessage, appendMessage, &message);
    const int result = xmlSchemaValidateDoc(validator.get(), d->document.get());
    return result == 0 ? QString() : "invalid: " + message;
}

} // namespace MorvexTest
