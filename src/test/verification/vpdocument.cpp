#include "test/verification/vpdocument.h"

#include "shared/xml/xmlparser.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTextStream>

#include <string>
#include <utility>

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

// Returns an error text, empty on success.
[[nodiscard]] QString decode(const QByteArray &xml, QString *text)
{
    QTextCodec *known = codecOfFirstBytes(xml);
    QTextCodec *codec = known ? known : declaredCodec(xml);
    QTextCodec::ConverterState state;
    *text = codec->toUnicode(xml.constData(), xml.size(), &state);
    if (state.invalidChars == 0 && state.remainingChars == 0)
        return {};
    return QStringLiteral("The file holds bytes that mean nothing in its encoding, %1.")
        .arg(QString::fromLatin1(codec->name()));
}

// Builds the tree that can be changed and saved.
class DocumentBuilder final : public XmlContentHandler
{
public:
    QDomDocument document() const { return m_document; }

private:
    void documentType(const char *name, const char *publicId, const char *systemId) override
    {
        m_document = QDomDocument(QDomImplementation().createDocumentType(
            QString::fromUtf8(name), QString::fromUtf8(publicId), QString::fromUtf8(systemId)));
        m_parent = m_document;
        // Only what is a child gets saved.
        append(m_document.doctype());
    }

    void startElement(const char *name, const char *const *attributes) override
    {
        QDomElement element = m_document.createElement(QString::fromUtf8(name));
        for (; *attributes; attributes += 2)
            element.setAttribute(QString::fromUtf8(attributes[0]),
                                 QString::fromUtf8(attributes[1]));
        m_parent = append(element);
    }

    void endElement() override
    {
        appendText();
        m_parent = m_parent.parentNode();
    }

    void text(std::string_view part) override { m_text += part; }

    void startCData() override { appendText(); }
    void endCData() override { m_parent.appendChild(m_document.createCDATASection(takeText())); }

    void comment(const char *text) override
    {
        append(m_document.createComment(QString::fromUtf8(text)));
    }

    void processingInstruction(const char *target, const char *data) override
    {
        append(m_document.createProcessingInstruction(QString::fromUtf8(target),
                                                      QString::fromUtf8(data)));
    }

    QString takeText() { return QString::fromStdString(std::exchange(m_text, std::string())); }

    void appendText()
    {
        if (!m_text.empty())
            m_parent.appendChild(m_document.createTextNode(takeText()));
    }

    QDomNode append(const QDomNode &node)
    {
        appendText();
        return m_parent.appendChild(node);
    }

    // One made without a type is null until something is made for it.
    QDomDocument m_document{QDomDocumentType()};
    QDomNode m_parent = m_document;
    std::string m_text;
};

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
    QString text;
    const QString error = decode(xml, &text);
    return error.isEmpty() ? parseDocument(text, document) : error;
}

QString parseDocument(const QString &xml, QDomDocument *document)
{
    DocumentBuilder builder;
    const XmlError error = parseXmlContent(xml.toStdString(), builder);
    if (!error.text.isEmpty())
        return error.text;
    *document = builder.document();
    removeIndentation(*document);
    return {};
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
