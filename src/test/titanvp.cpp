#include "test/titanvp.h"

#include "shared/files/writefile.h"
#include "shared/points/pointtypes.h"
#include "shared/realpath.h"
#include "shared/uiabstraction/text/legaltext.h"
#include "shared/uiabstraction/uielement.h"
#include "shared/uiabstraction/xmlexport.h"
#include "test/verification/titanpropertychecks.h"
#include "test/verification/titanselectiondefaults.h"

#include <QDir>
#include <QFileInfo>
#include <QXmlStreamWriter>

#include <memory>
#include <vector>

namespace Morvex {
namespace {

using UIAbstraction::UIElement;

const int indent = 2;

bool failWith(const QString &text, QString *error)
{
    if (error)
        *error = text;
    return false;
}

void writeStart(QXmlStreamWriter &writer, const QString &objectName)
{
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(indent);
    writer.writeStartDocument(QStringLiteral("1.0"));
    writer.writeStartElement(QStringLiteral("VerificationPoint"));
    writer.writeAttribute(QStringLiteral("version"), QStringLiteral("5"));
    writer.writeAttribute(QStringLiteral("type"), PointType::visual);
    writer.writeEmptyElement(QStringLiteral("Description"));
    writer.writeStartElement(QStringLiteral("Verification"));
    writer.writeAttribute(QStringLiteral("object"), UIAbstraction::legalText(objectName));
}

} // namespace

bool createTitanVPFile(const QByteArray &dump, const QFileInfo &file, const QString &objectName,
                       QString *error)
{
    const QString directory = cleanedPath(file.path());
    if (!QDir().mkpath(directory))
        return failWith(QStringLiteral("Unable to create %1 directory for VP file").arg(directory),
                        error);
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writeStart(writer, objectName);
    const bool isWhole = writeTitanXmlFragment(dump, writer, error);
    if (isWhole)
        writer.writeEndDocument();
    // Also when it isn't whole: the file shows how far it got.
    const FileWriteResult result = writeFileSafely(file.filePath(), xml);
    switch (result.outcome) {
    case FileWriteResult::Written:
        return isWhole;
    case FileWriteResult::NotOpened:
        return failWith(
            QStringLiteral("Failed to open file '%1': %2").arg(file.filePath(), result.error),
            error);
    case FileWriteResult::NotWritten:
        return isWhole && failWith(QStringLiteral("Failed to write file '%1': %2")
                                       .arg(file.filePath(), result.error),
                                   error);
    }
    return false;
}

bool writeTitanXmlFragment(const QByteArray &dump, QXmlStreamWriter &writer, QString *error)
{
    TitanSelectionDefaults defaults;
    if (!defaults.parse(error))
        return false;
    std::vector<std::unique_ptr<UIElement>> owned;
    const QList<UIElement *> elements = UIElement::elementsFromByteArray(dump);
    for (UIElement *element : elements)
        owned.emplace_back(element);
    writer.writeStartElement(QStringLiteral("visual"));
    UIAbstraction::XmlExporter(elements).toXmlFragment(&writer);
    TitanPropertyChecks checks(&defaults);
    for (const UIElement *element : elements)
        checks.collectChecks(element);
    checks.writeXml(&writer);
    writer.writeEndElement();
    return true;
}

} // namespace Morvex
