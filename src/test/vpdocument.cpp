#include "test/vpdocument.h"

#include "shared/xmlguard.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTextStream>

namespace Morvex {
namespace {

const int longestDeclaration = 500;

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

} // namespace

QString parseDocument(const QByteArray &xml, QDomDocument *document)
{
    // Decoded once: what is looked at is what the parser gets, in whatever encoding it came.
    const QString text = decoded(xml);
    if (xmlNestsDeeperThan(text.toStdString(), maxXmlDepth))
        return QStringLiteral("the elements are nested too deep");
    QString error;
    return document->setContent(text, &error) ? QString() : error;
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
