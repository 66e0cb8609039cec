#include "test/vpdocument.h"

#include "shared/xmlguard.h"

#include <QDomDocument>
#include <QTextStream>

namespace Morvex {

QString parseDocument(const QByteArray &xml, QDomDocument *document)
{
    if (xmlNestsDeeperThan(xml.toStdString(), maxXmlDepth))
        return QStringLiteral("the elements are nested too deep");
    QString error;
    return document->setContent(xml, &error) ? QString() : error;
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
