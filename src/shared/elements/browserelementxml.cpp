#include "shared/browserelement.h"

#include "shared/elements/uireader.h"
#include "shared/xml/elementtext.h"
#include "shared/xml/xmlguard.h"

#include <QFile>
#include <QFileInfo>

#include <tinyxml.h>

// The part of BrowserElement that reads XML.

namespace Morvex {

bool BrowserElement::readXML(BrowserElement *root, const QByteArray &xml, QString *error)
{
    const KeepWhiteSpace keepWhiteSpace;
    TiXmlDocument document;
    const QString refusal = parseXml(xml.toStdString(), &document);
    if (!refusal.isEmpty() && !document.Error()) {
        UiReader::setError(error, refusal);
        return false;
    }
    return convertXML(root, document, error);
}

bool BrowserElement::readXMLFile(BrowserElement *root, const QString &fileName, QString *error)
{
    QFile file(fileName);
    // A directory and a pipe can be opened, too.
    const bool isFile = QFileInfo(fileName).isFile();
    if (!isFile || !file.open(QIODevice::ReadOnly)) {
        const QString reason = isFile ? file.errorString() : QStringLiteral("No such file");
        UiReader::setError(error,
                           QStringLiteral("Failed to open file '%1': %2").arg(fileName, reason));
        return false;
    }
    return readXML(root, file.readAll(), error);
}

bool BrowserElement::convertXML(BrowserElement *root, const TiXmlDocument &document, QString *error)
{
    if (document.Error()) {
        // The parser gives 0 for a place that it does not know.
        UiReader::setError(error, QStringLiteral("XML Parse Error at %1:%2: %3")
                                      .arg(QString::number(qMax(1, document.ErrorRow())),
                                           QString::number(qMax(1, document.ErrorCol())),
                                           QString::fromUtf8(document.ErrorDesc())));
        return false;
    }
    return readUiElement(root, document.FirstChildElement(), error);
}

bool BrowserElement::readUiElement(BrowserElement *root, const TiXmlElement *element,
                                   QString *error)
{
    return UiReader(error).readUi(root, element);
}

} // namespace Morvex
