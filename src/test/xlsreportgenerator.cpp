#include "test/xlsreportgenerator.h"

#include "shared/xmltext.h"
#include "test/output/xmlelement.h"
#include "test/report/bufferedreport.h"
#include "test/report/countertable.h"
#include "test/report/iso8601time.h"
#include "test/report/openreport.h"
#include "test/report/resultlabels.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace Morvex {
namespace {

using Counters = TestReportGenerator::Counters;

// What a cell takes at most; a program refuses or shortens a longer one.
const int maxCellLength = 32767;
const QLatin1String cutMark(" [cut]");

// In points. The widest column that a program takes is 255 characters of its standard font.
const double minColumnWidth = 40;
const double maxColumnWidth = 1340;
const double cellPadding = 8;
const double widestCharacter = 13;

// For the labels of the counts, in points.
const QLatin1String summaryLabelWidth("132.75");

const QLatin1String stringType("String");
const QLatin1String dateTimeType("DateTime");
const QLatin1String numberType("Number");
const QLatin1String rowName("Row");
const QLatin1String tableName("Table");
const QLatin1String worksheetName("Worksheet");

enum Column {
    TypeColumn,
    TimeColumn,
    LineColumn,
    MessageColumn,
    DetailsColumn,
    VpNameColumn,
    ColumnCount
};

// No character of the fonts that spreadsheet programs start with, at 10 or 11 points, is wider.
double maxCharacterWidth(QChar character)
{
    switch (character.unicode()) {
    case 'm':
    case 'w':
    case 'M':
    case 'W':
    case '@':
    case '%':
    case '&':
        return 9.5;
    default:
        break;
    }
    if (character.unicode() >= 0x1100)
        return widestCharacter;
    return character.isUpper() || character.unicode() >= 0x100 ? 8 : 6;
}

double textWidth(const QString &text)
{
    double width = cellPadding;
    for (int i = 0; i < text.size() && width < maxColumnWidth; ++i)
        width += maxCharacterWidth(text.at(i));
    return std::min(width, maxColumnWidth);
}

QString cutToCell(const QString &text)
{
    if (text.size() <= maxCellLength)
        return text;
    int length = maxCellLength - cutMark.size();
    if (text.at(length - 1).isHighSurrogate())
        --length;
    return text.left(length) + cutMark;
}

XmlElement createCell(const QString &text, QLatin1String type)
{
    XmlElement data(QLatin1String("Data"));
    data.addAttribute(QLatin1String("ss:Type"), type);
    data.setText(text);
    XmlElement cell(QLatin1String("Cell"));
    cell.addChild(std::move(data));
    return cell;
}

XmlElement createStyleCell(const QString &text, QLatin1String type, QLatin1String style)
{
    XmlElement data(QLatin1String("Data"));
    data.addAttribute(QLatin1String("ss:Type"), type);
    data.setText(text);
    XmlElement cell(QLatin1String("Cell"));
    cell.addAttribute(QLatin1String("ss:StyleID"), style);
    cell.addChild(std::move(data));
    return cell;
}

// Programs take no zone and misread an empty date, for which the cell is left empty.
XmlElement timeCell(const QDateTime &time, Iso8601Time &times)
{
    const QLatin1String style("dateformat");
    if (time.isValid())
        return createStyleCell(times.isoDate(time.toLocalTime()), dateTimeType, style);
    XmlElement cell(QLatin1String("Cell"));
    cell.addAttribute(QLatin1String("ss:StyleID"), style);
    return cell;
}

QLatin1String styleOf(TestResult::ResultType type)
{
    switch (resultColor(type)) {
    case ResultColor::Red:
        return QLatin1String("red");
    case ResultColor::Green:
        return QLatin1String("green");
    case ResultColor::Magenta:
        return QLatin1String("magenta");
    case ResultColor::Blue:
        break;
    }
    return QLatin1String("blue");
}

// The names in XML, as titles.
QString labelOf(const CounterRow &row)
{
    const QString name = row.name;
    return name.left(1).toUpper() + name.mid(1);
}

// Passes and fails always, the others when there are any: the cell is read at a glance.
QString countsText(const Counters &counters)
{
    QStringList counts;
    for (const CounterRow::Member member : flatCounters()) {
        if (counts.size() < 2 || counters.*member > 0)
            counts +=
                QStringLiteral("%1: %2").arg(labelOf(counterRow(member))).arg(counters.*member);
    }
    return QLatin1String(" (") + counts.join(QLatin1String(", ")) + QLatin1Char(')');
}

XmlElement styleElement(QLatin1String id, XmlElement content)
{
    XmlElement style(QLatin1String("Style"));
    style.addAttribute(QLatin1String("ss:ID"), id);
    style.addChild(std::move(content));
    return style;
}

XmlElement elementWith(QLatin1String name, QLatin1String attribute, QLatin1String value)
{
    XmlElement element(name);
    element.addAttribute(attribute, value);
    return element;
}

XmlElement fontStyle(QLatin1String id, QLatin1String attribute, QLatin1String value)
{
    return styleElement(id, elementWith(QLatin1String("Font"), attribute, value));
}

XmlElement defaultStyle()
{
    XmlElement style(QLatin1String("Style"));
    style.addAttribute(QLatin1String("ss:ID"), QStringLiteral("Default"));
    style.addAttribute(QLatin1String("ss:Name"), QStringLiteral("Normal"));
    style.addChild(elementWith(QLatin1String("Alignment"), QLatin1String("ss:Vertical"),
                               QLatin1String("Bottom")));
    return style;
}

XmlElement stylesElement()
{
    const QLatin1String color("ss:Color");
    XmlElement styles(QLatin1String("Styles"));
    styles.addChild(defaultStyle());
    styles.addChild(fontStyle(QLatin1String("bold"), QLatin1String("ss:Bold"), QLatin1String("1")));
    styles.addChild(fontStyle(QLatin1String("red"), color, QLatin1String("#C00000")));
    styles.addChild(fontStyle(QLatin1String("green"), color, QLatin1String("#00A000")));
    styles.addChild(fontStyle(QLatin1String("blue"), color, QLatin1String("#0000C0")));
    styles.addChild(fontStyle(QLatin1String("magenta"), color, QLatin1String("#FF0090")));
    styles.addChild(
        styleElement(QLatin1String("dateformat"),
                     elementWith(QLatin1String("NumberFormat"), QLatin1String("ss:Format"),
                                 QLatin1String("General Date"))));
    return styles;
}

XmlElement workbookElement()
{
    const QString spreadsheet = QStringLiteral("urn:schemas-microsoft-com:office:spreadsheet");
    XmlElement workbook(QLatin1String("Workbook"));
    workbook.addAttribute(QLatin1String("xmlns"), spreadsheet)
        .addAttribute(QLatin1String("xmlns:ss"), spreadsheet)
        .addAttribute(QLatin1String("xmlns:o"),
                      QStringLiteral("urn:schemas-microsoft-com:office:office"))
        .addAttribute(QLatin1String("xmlns:x"),
                      QStringLiteral("urn:schemas-microsoft-com:office:excel"))
        .addAttribute(QLatin1String("xmlns:html"),
                      QStringLiteral("http://www.w3.org/TR/REC-html40"));
    return workbook;
}

XmlElement worksheetElement(const QString &name)
{
    XmlElement worksheet(worksheetName);
    worksheet.addAttribute(QLatin1String("ss:Name"), name);
    return worksheet;
}

XmlElement columnElement(double width)
{
    XmlElement column(QLatin1String("Column"));
    column.addAttribute(QLatin1String("ss:Width"), QString::number(width, 'f', 2));
    column.addAttribute(QLatin1String("ss:AutoFitWidth"), 1);
    return column;
}

XmlElement summarySheet(const TestReportGenerator &generator)
{
    XmlElement table(tableName);
    table.addAttribute(QLatin1String("ss:ExpandedColumnCount"), 2);
    table.addAttribute(QLatin1String("ss:ExpandedRowCount"), int(counterTable().size()));
    table.addChild(
        elementWith(QLatin1String("Column"), QLatin1String("ss:Width"), summaryLabelWidth));
    for (const CounterRow &counter : counterTable()) {
        const int count = generator.resultCount(counter.key);
        XmlElement row(rowName);
        row.addChild(createStyleCell(labelOf(counter), stringType, QLatin1String("bold")));
        row.addChild(createCell(QString::number(count), numberType));
        table.addChild(std::move(row));
    }
    XmlElement worksheet = worksheetElement(QStringLiteral("Summary"));
    worksheet.addChild(std::move(table));
    return worksheet;
}

} // namespace

struct XlsReportGenerator::Private
{
    std::unique_ptr<ReportFile> file;
    BufferedReport rows;
    // In points, for the widest text of each column so far.
    std::array<double, ColumnCount> columnWidths;
    // The start of the current test case, held back until its counts are known.
    std::optional<TestResult::Entry> startOfTestCase;
    bool hasTestCase = false;
    Counters counters;
    Iso8601Time times;

    XmlElement rowElement(const TestResult::Entry &entry, const QString &message);
    QString cellText(int column, const QString &text);
    void startTestCase(const TestResult::Entry &entry);
    void fillStartRow();
    QByteArray serializedRow(const XmlElement &row) const;
    void dumpReport(const XmlElement &summary);
    int indentStep() const;
};

XlsReportGenerator::XlsReportGenerator(std::unique_ptr<ReportFile> file)
    : d(std::make_unique<Private>())
{
    d->file = std::move(file);
    d->columnWidths.fill(minColumnWidth);
    d->columnWidths[TimeColumn] = textWidth(QStringLiteral("00/00/0000 00:00:00 PM"));
}

XlsReportGenerator::~XlsReportGenerator() = default;

TestReportGenerator::Result XlsReportGenerator::create(const QString &path)
{
    return createInFile(
        path, {}, ReportFile::LocalOnStdStream,
        [](std::unique_ptr<ReportFile> file) { return new XlsReportGenerator(std::move(file)); });
}

void XlsReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    if (entry.type == TestResult::START_TEST_CASE) {
        d->startTestCase(entry);
        return;
    }
    countResult(d->counters, entry.type);
    d->rows.append(d->serializedRow(d->rowElement(entry, escapeControls(entry.message))));
}

void XlsReportGenerator::Private::startTestCase(const TestResult::Entry &entry)
{
    fillStartRow();
    if (hasTestCase)
        rows.append(serializedRow(XmlElement(rowName)));
    hasTestCase = true;
    counters = {};
    startOfTestCase = entry;
    rows.openGap();
}

void XlsReportGenerator::Private::fillStartRow()
{
    if (!startOfTestCase)
        return;
    const TestResult::Entry &entry = *startOfTestCase;
    const QString message = escapeControls(entry.message) + countsText(counters);
    rows.fillGap(serializedRow(rowElement(entry, message)));
    startOfTestCase.reset();
}

XmlElement XlsReportGenerator::Private::rowElement(const TestResult::Entry &entry,
                                                   const QString &message)
{
    XmlElement row(rowName);
    row.addChild(createStyleCell(cellText(TypeColumn, resultName(entry.type)), stringType,
                                 styleOf(entry.type)));
    row.addChild(timeCell(entry.time, times));
    row.addChild(createCell(cellText(LineColumn, entry.line.toString()), stringType));
    row.addChild(createCell(cellText(MessageColumn, message), stringType));
    row.addChild(createCell(cellText(DetailsColumn, escapeControls(entry.details)), stringType));
    row.addChild(createCell(cellText(VpNameColumn, entry.vpName), stringType));
    return row;
}

// The text as it goes into a cell; its column becomes wide enough for it.
QString XlsReportGenerator::Private::cellText(int column, const QString &text)
{
    const QString cell = cutToCell(replaceInvalidXMLcharacters(text));
    double &width = columnWidths[static_cast<std::size_t>(column)];
    if (width < std::min(maxColumnWidth, cellPadding + cell.size() * widestCharacter))
        width = std::max(width, textWidth(cell));
    return cell;
}

QByteArray XlsReportGenerator::Private::serializedRow(const XmlElement &row) const
{
    const int depth = 3;
    QByteArray text;
    row.append(text, depth * indentStep(), indentStep());
    return text;
}

void XlsReportGenerator::generateSummary()
{
    d->fillStartRow();
    d->dumpReport(summarySheet(*this));
}

void XlsReportGenerator::Private::dumpReport(const XmlElement &summary)
{
    const XmlElement workbook = workbookElement();
    const XmlElement worksheet = worksheetElement(QStringLiteral("TestCases"));
    XmlElement table(tableName);
    table.addAttribute(QLatin1String("ss:ExpandedColumnCount"), ColumnCount);

    int indent = 0;
    QByteArray text = file->xmlDeclaration() + "<?mso-application progid=\"Excel.Sheet\"?>\n";
    const auto dump = [&](const XmlElement &element, WriteMode mode) {
        dumpElementToStream(element, mode, &text, indent, indentStep());
    };
    dump(workbook, OpenTag);
    dump(stylesElement(), WholeElement);
    dump(worksheet, OpenTag);
    dump(table, OpenTag);
    for (const double width : columnWidths)
        dump(columnElement(width), WholeElement);
    file->write(text);
    rows.writeTo(*file);
    text.clear();
    dump(table, CloseTag);
    dump(worksheet, CloseTag);
    dump(summary, WholeElement);
    dump(workbook, CloseTag);
    file->write(text);
    file->flush();
}

int XlsReportGenerator::Private::indentStep() const
{
    return file->isStdStream() ? 1 : 4;
}

} // namespace Morvex
