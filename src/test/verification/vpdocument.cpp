// Qt 5 drops texts of blanks unless it is given a reader, which its version 6 does not take.
#undef QT_DISABLE_DEPRECATED_BEFORE
#define QT_DISABLE_DEPRECATED_BEFORE 0

#include "test/verification/vpdocument.h"

#include "shared/xmlguard.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTextStream>
#include <QXmlContentHandler>
#include <QXmlSimpleReader>

#include <memory>

namespace Morvex {
namespace {

const int longestDeclaration = 500;
const QLatin1String cellTextTag("text");

// A declaration is ASCII, and the first thing in its file.
QTextCodec *declaredCodec(const QByteArray &xml)
{
    static const QRegularExpression declaration(
        QStringLiteral("\\A<\\?xml[^>]*\\sencoding\\s*=\\s*[\"']([A-Za-z0-9._-]+)[\"']"));
    const QString name =
        declaration.match(QString::fromLatin1(xml.left(longestDeclaration))).captured(1);
    QTextCodec *codec = QTextCodec::codecForName(name.toLatin1());
    return codec ? codec : QTextCodec::codecForName("UTF-8");
}

// By the byte order mark, or by the zero beside the first character of markup.
QTextCodec *codecOfFirstBytes(const QByteArray &xml)
{
    if (xml.startsWith(QByteArray("<\0", 2)))
        return QTextCodec::codecForName("UTF-16LE");
    if (xml.startsWith(QByteArray("\0<", 2)))
        return QTextCodec::codecForName("UTF-16BE");
    return QTextCodec::codecForUtfText(xml, nullptr);
}

QString decoded(const QByteArray &xml)
{
    QTextCodec *codec = codecOfFirstBytes(xml);
    return (codec ? codec : declaredCodec(xml))->toUnicode(xml);
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

// Hands everything on, up to a depth: the parser and the tree call themselves for each level.
class DepthLimit : public QXmlContentHandler
{
public:
    explicit DepthLimit(QXmlContentHandler *handler)
        : m_handler(handler)
    {
    }

    bool startElement(const QString &uri, const QString &localName, const QString &name,
                      const QXmlAttributes &attributes) override
    {
        m_isTooDeep = ++m_depth > maxXmlDepth;
        return !m_isTooDeep && m_handler->startElement(uri, localName, name, attributes);
    }

    bool endElement(const QString &uri, const QString &localName, const QString &name) override
    {
        --m_depth;
        return m_handler->endElement(uri, localName, name);
    }

    QString errorString() const override
    {
        return m_isTooDeep ? QStringLiteral("the elements are nested too deep")
                           : m_handler->errorString();
    }

    void setDocumentLocator(QXmlLocator *locator) override
    {
        m_handler->setDocumentLocator(locator);
    }
    bool startDocument() override { return m_handler->startDocument(); }
    bool endDocument() override { return m_handler->endDocument(); }
    bool startPrefixMapping(const QString &prefix, const QString &uri) override
    {
        return m_handler->startPrefixMapping(prefix, uri);
    }
    bool endPrefixMapping(const QString &prefix) override
    {
        return m_handler->endPrefixMapping(prefix);
    }
    bool characters(const QString &text) override { return m_handler->characters(text); }
    bool ignorableWhitespace(const QString &text) override
    {
        return m_handler->ignorableWhitespace(text);
    }
    bool processingInstruction(const QString &target, const QString &data) override
    {
        return m_handler->processingInstruction(target, data);
    }
    bool skippedEntity(const QString &name) override { return m_handler->skippedEntity(name); }

private:
    QXmlContentHandler *m_handler;
    int m_depth = 0;
    bool m_isTooDeep = false;
};

// A reader as a document makes it for itself, but for the blanks that it keeps and the depth.
class DocumentReader : public QXmlSimpleReader
{
public:
    DocumentReader()
    {
        setFeature(
            QStringLiteral("http://qt-project.org/xml/features/report-whitespace-only-CharData"),
            true);
        setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
        setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    }

    // The document calls this with what builds it.
    void setContentHandler(QXmlContentHandler *handler) override
    {
        m_limit = std::make_unique<DepthLimit>(handler);
        QXmlSimpleReader::setContentHandler(m_limit.get());
    }

private:
    std::unique_ptr<DepthLimit> m_limit;
};

// Returns an error text, empty on success.
QString setWholeContent(const QString &xml, QDomDocument *document)
{
    QXmlInputSource source;
    source.setData(xml);
    DocumentReader reader;
    QString error;
    return document->setContent(&source, &reader, &error) ? QString() : error;
}
QT_WARNING_POP

bool hasSiblings(const QDomNode &node)
{
    return !node.previousSibling().isNull() || !node.nextSibling().isNull();
}

// Blanks between elements lay out the file. They count in the texts of cells, and where an element
// holds nothing else.
void removeIndentation(QDomNode &parent)
{
    QDomNode next;
    for (QDomNode node = parent.firstChild(); !node.isNull(); node = next) {
        next = node.nextSibling();
        if (node.nodeType() == QDomNode::TextNode && node.nodeValue().trimmed().isEmpty()) {
            if (hasSiblings(node))
                parent.removeChild(node);
        } else if (node.nodeName() != cellTextTag) {
            removeIndentation(node);
        }
    }
}

} // namespace

QString parseDocument(const QByteArray &xml, QDomDocument *document)
{
    const QString error = setWholeContent(decoded(xml), document);
    if (error.isEmpty())
        removeIndentation(*document);
    return error;
}

QString nodeText(const QDomNode &node)
{
    QString text;
    QTextStream stream(&text);
    node.save(stream, -1);
    return text;
}

bool hasExpectedFailure(const QDomElement &verification)
{
    return verification.attribute(QStringLiteral("xfail")) == QLatin1String("true");
}

} // namespace Morvex
