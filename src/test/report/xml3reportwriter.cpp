#include "test/report/xml3reportwriter.h"

#include "test/output/reporttext.h"
#include "test/report/resultlabels.h"

namespace Morvex {
namespace Xml3ReportWriter {
namespace {

const int firstVersionWithRetry = 2;

void writeCells(XmlStreamWriter &writer, const FList<TableDiff::Cell> &cells)
{
    for (const TableDiff::Cell &cell : cells)
        writeTableDiffCell(writer, cell);
}

// Without a cell, as a broken stream may bring it, the number is unknown.
void writeLine(XmlStreamWriter &writer, const std::string &element, const std::string &attribute,
               int TableDiff::Cell::*number, const FList<TableDiff::Cell> &cells)
{
    writer.writeStartElement(element);
    if (!cells.isEmpty())
        writer.writeIntAttribute(attribute, cells.first().*number);
    writeCells(writer, cells);
    writer.writeEndElement();
}

void writeSubject(XmlStreamWriter &writer, const TableDiff::Subject &subject)
{
    switch (subject.type) {
    case TableDiff::Subject::ROW:
        writeLine(writer, "row", "line", &TableDiff::Cell::row, subject.cells);
        break;
    case TableDiff::Subject::COLUMN:
        writeLine(writer, "column", "column", &TableDiff::Cell::column, subject.cells);
        break;
    case TableDiff::Subject::CELL:
        writeCells(writer, subject.cells);
        break;
    }
}

} // namespace

void writeSectionStart(XmlStreamWriterQString &writer, int version, const QString &type,
                       const QString &name, const std::string &time, const QString &summary,
                       const QString &description, const std::string &uri, int lineNo, int retry,
                       int maxRetry)
{
    writer.writeStartElement("test");
    writer.writeAttributeQString("type", type);
    writer.writeStartElement("prolog");
    writer.writeAttribute("time", time);
    writeSectionTexts(writer, name, summary, description);
    writeFileLocation(writer, uri, lineNo);
    if (version >= firstVersionWithRetry && retry >= 0 && maxRetry > 0) {
        writer.writeStartElement("retry");
        writer.writeIntAttribute("count", maxRetry - retry);
        writer.writeIntAttribute("max", maxRetry);
        writer.writeEndElement();
    }
    writer.writeEndElement();
}

void writeSectionTexts(XmlStreamWriterQString &writer, const QString &name, const QString &summary,
                       const QString &description)
{
    writer.writeCDataElementQString("name", nameOrUnnamed(name));
    if (!summary.isEmpty())
        writer.writeCDataElementQString("summary", summary);
    if (!description.isEmpty())
        writer.writeCDataElementQString("description", description);
}

void writeFileLocation(XmlStreamWriter &writer, const std::string &uri, int lineNo)
{
    writer.writeStartElement("location");
    writeFileLocationContent(writer, uri, lineNo);
    writer.writeEndElement();
}

void writeFileLocationContent(XmlStreamWriter &writer, const std::string &uri, int lineNo)
{
    writer.writeCDataElement("uri", uri);
    if (lineNo >= 0)
        writer.writeCDataElement("lineNo", std::to_string(lineNo));
}

void writeTableDiff(XmlStreamWriter &writer, const FList<TableDiff::Element> &diff)
{
    writer.writeStartElement("tablediff");
    for (const TableDiff::Element &element : diff) {
        writer.writeStartElement(differenceName(element.kind).data());
        writeSubject(writer, element.subject);
        writer.writeEndElement();
    }
    writer.writeEndElement();
}

void writeTableDiffCell(XmlStreamWriter &writer, const TableDiff::Cell &cell)
{
    writer.writeStartElement("cell");
    for (auto property = cell.properties.cbegin(); property != cell.properties.cend(); ++property) {
        writer.writeStartElement("property");
        writer.writeAttribute("name", reportUtf8(property.key()));
        writer.writeCharacters(reportUtf8(property.value().toString()));
        writer.writeEndElement();
    }
    writer.writeEndElement();
}

} // namespace Xml3ReportWriter
} // namespace Morvex
