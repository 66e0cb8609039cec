#include "test/tablevp.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/methodlist.h"
#include "shared/files/writefile.h"
#include "shared/points/pointtypes.h"
#include "shared/xmltablerange.h"
#include "test/testvp.h"
#include "test/verification/vpcall.h"
#include "test/verification/vpdocument.h"

#include <QFile>

#include <tinyxml.h>

namespace Morvex {
namespace {

SharedPtr<Object> castToTable(const SharedPtr<Object> &object)
{
    Inspector *inspector = Inspector::self();
    return inspector ? inspector->cast(object, QStringLiteral("Table")) : SharedPtr<Object>();
}

// Null on failure.
SharedPtr<Object> invoke(const SharedPtr<Object> &self, const char *method,
                         const ObjectList &arguments)
{
    const Class *selfClass = self->objectClass();
    const MethodList *methods = selfClass ? selfClass->methods(QLatin1String(method)) : nullptr;
    SharedPtr<Object> result;
    return methods && methods->invoke(self, arguments, &result) ? result : SharedPtr<Object>();
}

SharedPtr<Object> wholeRange(const SharedPtr<Object> &table)
{
    const SharedPtr<Object> all = Inspector::self()->makeInt(-1);
    return invoke(table, "getRange", {all, all, all, all});
}

// Null on failure, for which an ERROR is added.
SharedPtr<Object> contentOf(const SharedPtr<Object> &object, const QString &objectName,
                            VPCall &call)
{
    const SharedPtr<Object> table = castToTable(object);
    if (!table) {
        call.addError(QStringLiteral(": Invalid object type"),
                      QStringLiteral("Object '%1' is not a table").arg(objectName));
        return {};
    }
    const SharedPtr<Object> range = wholeRange(table);
    const SharedPtr<Object> content =
        range ? invoke(range, "contentAsXml", {Inspector::self()->makeInt(TableRange::TextContent)})
              : SharedPtr<Object>();
    if (!content)
        call.addError(QStringLiteral(": Could not fetch table contents"),
                      QStringLiteral("Object '%1' did not give its content").arg(objectName));
    return content;
}

void replaceFirstChild(QDomElement &element, const QDomElement &child)
{
    const QDomNode imported = element.ownerDocument().importNode(child, true);
    if (element.firstChild().isNull())
        element.appendChild(imported);
    else
        element.replaceChild(imported, element.firstChild());
}

} // namespace

bool TestVP::performTableVerification(QDomElement &element, VPCall &call) const
{
    const QString objectName = element.attribute(QStringLiteral("object"));
    const SharedPtr<Object> object = call.resolve(objectName);
    const SharedPtr<Object> content = object ? contentOf(object, objectName, call) : object;
    if (!content)
        return false;
    const QString actual = content->valueText();
    FList<TableDiff::Element> diff;
    const bool isEqual =
        table_diff_xml(nodeText(element.firstChild()).toStdString(), actual.toStdString(), &diff);
    if (isEqual || !call.learn) {
        call.logger.addResult(objectName, diff, m_name, m_file, call.expectFail);
        return isEqual != call.expectFail;
    }
    QDomDocument learned;
    if (parseDocument(actual, &learned).isEmpty()) {
        replaceFirstChild(element, learned.documentElement());
        call.updated = true;
    }
    call.addResult(
        TestResult::WARNING,
        QStringLiteral("%1: Table Comparison of '%2' failed. The Verification Point was "
                       "updated due to the MORVEX_LEARN_SCREENSHOTS environment variable")
            .arg(m_name, objectName),
        tableDetails(diff.isEmpty()));
    return !call.expectFail;
}

QString retrieveTableContent(const SharedPtr<Object> &object, XmlTableRange *range)
{
    const SharedPtr<Object> table = castToTable(object);
    if (!table)
        return QStringLiteral("Object does not support fetching table content");
    const SharedPtr<Object> whole = wholeRange(table);
    if (!whole)
        return QStringLiteral("Could not fetch table range for object");
    const SharedPtr<Object> content = invoke(whole, "contentAsXml", {});
    if (!content)
        return QStringLiteral("Could not fetch table contents as XML");
    range->loadContentFromXml(content->valueText().toStdString());
    return {};
}

QString createTableXmlFile(const SharedPtr<Object> &object, const QString &fileName)
{
    XmlTableRange range;
    const QString error = retrieveTableContent(object, &range);
    if (!error.isEmpty())
        return error;
    TiXmlDocument document;
    document.InsertEndChild(TiXmlDeclaration("1.0", "utf-8", ""));
    range.contentAsXml(&document, TableRange::TextContent);
    TiXmlPrinter printer;
    document.Accept(&printer);
    const FileWriteResult result =
        writeFileSafely(fileName, printer.CStr(), qint64(printer.Size()));
    return result.outcome == FileWriteResult::Written
               ? QString()
               : QStringLiteral("Could not write '%1'").arg(fileName);
}

bool hasUnreadableTable(const QString &pointFile)
{
    QFile file(pointFile);
    QDomDocument document;
    if (!QFileInfo(pointFile).isFile() || !file.open(QIODevice::ReadOnly) ||
        !parseDocument(file.readAll(), &document).isEmpty())
        return false;
    const QDomElement root = document.documentElement();
    if (root.attribute(QStringLiteral("type")) != PointType::table)
        return false;
    const QString tag = QStringLiteral("Verification");
    XmlTableRange table;
    QDomElement element = root.firstChildElement(tag);
    while (!element.isNull() &&
           table.loadContentFromXml(nodeText(element.firstChild()).toStdString()))
        element = element.nextSiblingElement(tag);
    return !element.isNull();
}

} // namespace Morvex
