#include "support/xmldocument.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>

namespace MorvexTest {
namespace {

using ObjectPtr = std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)>;

void removeNamespaces(xmlNode *node)
{
    for (; node; node = node->next) {
        if (node->type != XML_ELEMENT_NODE)
            continue;
        node->ns = nullptr;
        removeNamespaces(node->children);
    }
}

QString takeText(xmlChar *text)
{
    const QString result = QString::fromUtf8(reinterpret_cast<const char *>(text));
    xmlFree(text);
    return result;
}

} // namespace

struct XmlDocument::Private
{
    xmlDoc *document;

    ObjectPtr evaluate(const char *xpath) const
    {
        xmlXPathContext *context = xmlXPathNewContext(document);
        ObjectPtr object(xmlXPathEvalExpression(reinterpret_cast<const xmlChar *>(xpath), context),
                         &xmlXPathFreeObject);
        xmlXPathFreeContext(context);
        return object;
    }
};

XmlDocument::XmlDocument(const QByteArray &text)
    : d(new Private{xmlReadMemory(text.constData(), text.size(), "report.xml", nullptr,
                                  XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR)})
{
    if (d->document)
        removeNamespaces(d->document->children);
}

XmlDocument::~XmlDocument()
{
    xmlFreeDoc(d->document);
}

bool XmlDocument::isWellFormed() const
{
    return d->document != nullptr;
}

QString XmlDocument::value(const char *xpath) const
{
    const ObjectPtr object = d->evaluate(xpath);
    return object ? takeText(xmlXPathCastToString(object.get())) : QString();
}

QStringList XmlDocument::values(const char *xpath) const
{
    const ObjectPtr object = d->evaluate(xpath);
    QStringList texts;
    for (int i = 0; object && object->nodesetval && i < object->nodesetval->nodeNr; ++i)
        texts += takeText(xmlNodeGetContent(object->nodesetval->nodeTab[i]));
    return texts;
}

} // namespace MorvexTest
