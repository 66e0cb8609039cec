// Qt 5 drops texts of blanks unless it is given a reader, which its version 6 does not take.
#undef QT_DISABLE_DEPRECATED_BEFORE
#define QT_DISABLE_DEPRECATED_BEFORE 0

#include "test/vpdocument.h"

#include "shared/xmlguard.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTextStream>
#include <QXmlSimpleReader>

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
// Returns an error text, empty on success.
QString setWholeContent(const QString &xml, QDomDocument *document)
{
    QXmlInputSource source;
    source.setData(xml);
    QXmlSimpleReader reader;
    reader.setFeature(
        QStringLiteral("http://qt-project.org/xml/features/report-whitespace-only-CharData"), true);
    // As the document sets a reader of its own.
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    QString error;
    return document->setContent(&source, &reader, &error) ? QString() : error;
}
QT_WARNING_POP

// Blanks count in the texts of cells alone.
void removeIndentation(QDomNode &parent)
{
    QDomNode next;
    for (QDomNode node = parent.firstChild(); !node.isNull(); node = next) {
        next = node.nextSibling();
        if (node.nodeType() == QDomNode::TextNode && node.nodeValue().trimmed().isEmpty())
            parent.removeChild(node);
        else if (node.nodeName() != cellTextTag)
            removeIndentation(node);
    }
}

} // namespace

QString parseDocument(const QByteArray &xml, QDomDocument *document)
{
    // Decoded once: what is looked at is what the parser gets, in whatever encoding it came.
    const QString text = decoded(xml);
    if (xmlNestsDeeperThan(text.toStdString(), maxXmlDepth))
        return QStringLiteral("the elements are nested too deep");
    const QString error = setWholeContent(text, document);
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
