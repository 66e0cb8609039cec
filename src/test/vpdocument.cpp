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

QString decoded(const QByteArray &xml)
{
    QTextCodec *marked = QTextCodec::codecForUtfText(xml, nullptr);
    return (marked ? marked : declaredCodec(xml))->toUnicode(xml);
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
