#include "shared/xlsxparts.h"

#include "shared/xmlguard.h"

#include <QXmlStreamReader>

namespace Morvex {
namespace {

const unsigned maxRows = 1048576;
const unsigned maxColumns = 16384;
// Of all cells that a sheet does not have and that are filled in.
const quint64 maxFillers = 32 * 1024 * 1024;

// Moves through the elements of a document from outside. After an error there are no more of them.
class ElementReader
{
public:
    explicit ElementReader(QIODevice *device)
        : m_xml(device)
    {
    }

    // False when the document has another root, which is skipped then.
    bool enterRoot(const char *name)
    {
        while (!m_xml.atEnd()) {
            const QXmlStreamReader::TokenType token = m_xml.readNext();
            // Documents of this kind have none, and entities only serve to make them grow.
            if (token == QXmlStreamReader::DTD)
                fail(QStringLiteral("The document has a document type."));
            if (token != QXmlStreamReader::StartElement)
                continue;
            if (is(name))
                return true;
            skip();
        }
        return false;
    }

    // The next child of the current element, which becomes the current one. Without another child
    // the parent is left.
    bool enterChild() { return m_xml.readNextStartElement(); }

    bool is(const char *name) const { return m_xml.name() == QLatin1String(name); }
    QXmlStreamAttributes attributes() const { return m_xml.attributes(); }

    void skip()
    {
        for (int depth = 1; depth > 0 && !m_xml.atEnd();) {
            const QXmlStreamReader::TokenType token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement && ++depth > maxXmlDepth)
                fail(QStringLiteral("The elements are nested too deep."));
            else if (token == QXmlStreamReader::EndElement)
                --depth;
        }
    }

    // The text in the current element, which is left, without that of its children.
    QString takeText()
    {
        QString text = QLatin1String("");
        while (!m_xml.atEnd()) {
            const QXmlStreamReader::TokenType token = m_xml.readNext();
            if (token == QXmlStreamReader::EndElement)
                break;
            if (token == QXmlStreamReader::StartElement)
                skip();
            else if (token == QXmlStreamReader::Characters && text.isEmpty())
                text = m_xml.text().toString();
            else if (token == QXmlStreamReader::Characters)
                text += m_xml.text();
        }
        return text;
    }

    void fail(const QString &error) { m_xml.raiseError(error); }
    bool hasFailed() const { return m_xml.hasError(); }

    // Reads what is behind the root.
    QString finish()
    {
        while (!m_xml.atEnd())
            m_xml.readNext();
        return errorText();
    }

    QString errorText() const
    {
        return m_xml.hasError()
                   ? QStringLiteral("line %1: %2").arg(m_xml.lineNumber()).arg(m_xml.errorString())
                   : QString();
    }

private:
    QXmlStreamReader m_xml;
};

// Plain text, or else that of its runs with a formatting each.
QString takeSharedString(ElementReader &reader)
{
    QString plain;
    QString rich;
    while (reader.enterChild()) {
        if (reader.is("t")) {
            plain += reader.takeText();
        } else if (reader.is("r")) {
            while (reader.enterChild()) {
                if (reader.is("t"))
                    rich += reader.takeText();
                else
                    reader.skip();
            }
        } else {
            reader.skip();
        }
    }
    return plain.isEmpty() ? rich : plain;
}

// The letters in front, as a number in which A is 1. Stays beyond the last column once it is.
unsigned columnOf(const QStringRef &reference)
{
    unsigned column = 0;
    for (const QChar character : reference) {
        const int letter = character.unicode() - 'A';
        if (letter < 0 || letter >= 26)
            break;
        column = qMin(column * 26 + static_cast<unsigned>(letter) + 1, maxColumns + 1);
    }
    return column;
}

unsigned widthOf(const QStringRef &range)
{
    const QVector<QStringRef> corners = range.split(QLatin1Char(':'));
    return columnOf(corners.size() > 1 ? corners.at(1) : corners.at(0));
}

class SheetReader
{
public:
    SheetReader(QIODevice *device, const std::vector<QString> &sharedStrings, TestDataSet *dataSet,
                XlsxRows *rows)
        : m_reader(device)
        , m_sharedStrings(sharedStrings)
        , m_dataSet(dataSet)
        , m_rows(rows)
    {
    }

    QString read()
    {
        if (m_reader.enterRoot("worksheet"))
            readWorksheet();
        return m_reader.finish();
    }

private:
    struct Cell
    {
        unsigned column;
        bool hasSharedString;
    };

    void readWorksheet()
    {
        while (m_reader.enterChild()) {
            if (m_reader.is("dimension") && !m_hasDimension)
                readDimension();
            else if (m_reader.is("sheetData"))
                readRows();
            else
                m_reader.skip();
        }
    }

    void readDimension()
    {
        m_hasDimension = true;
        const QXmlStreamAttributes attributes = m_reader.attributes();
        m_width = widthOf(attributes.value(QLatin1String("ref")));
        checkColumn(m_width);
        m_reader.skip();
    }

    void readRows()
    {
        while (m_reader.enterChild()) {
            if (m_reader.is("row"))
                readRow();
            else
                m_reader.skip();
        }
    }

    void readRow()
    {
        const unsigned number = rowNumber();
        if (!fillRowsBefore(number))
            return;
        auto record = std::make_unique<TestDataRecord>(m_dataSet, static_cast<int>(number) - 1);
        record->reserve(static_cast<int>(m_width));
        unsigned column = 1;
        while (m_reader.enterChild()) {
            if (m_reader.is("c"))
                column = readCell(*record, column) + 1;
            else
                m_reader.skip();
        }
        fill(*record, column, m_width + 1);
        addRow(std::move(record), number);
        m_nextRow = number + 1;
    }

    // 0 for a row that does not tell it.
    unsigned rowNumber()
    {
        const QXmlStreamAttributes attributes = m_reader.attributes();
        const unsigned number = attributes.value(QLatin1String("r")).toUInt();
        if (number > maxRows)
            m_reader.fail(QStringLiteral("A sheet can't have a row %1.").arg(number));
        return number;
    }

    bool fillRowsBefore(unsigned number)
    {
        for (; m_nextRow < number && !m_reader.hasFailed(); ++m_nextRow) {
            auto record =
                std::make_unique<TestDataRecord>(m_dataSet, static_cast<int>(m_nextRow) - 1);
            record->reserve(static_cast<int>(m_width));
            fill(*record, 1, m_width + 1);
            addRow(std::move(record), m_nextRow);
        }
        return !m_reader.hasFailed();
    }

    void addRow(std::unique_ptr<TestDataRecord> record, unsigned number)
    {
        if (number == 1)
            m_rows->header = std::move(record);
        else
            m_rows->records.push_back(std::move(record));
        if (m_rows->records.size() > maxRows)
            m_reader.fail(QStringLiteral("The sheet has too many rows."));
    }

    // Returns the column of the cell.
    unsigned readCell(TestDataRecord &record, unsigned expectedColumn)
    {
        const Cell cell = currentCell();
        checkColumn(cell.column);
        fill(record, expectedColumn, cell.column);
        record.addValue(cell.hasSharedString ? takeSharedValue() : takeValue());
        return cell.column;
    }

    // The attributes must be out of the way before the parser goes on: it would copy them.
    Cell currentCell() const
    {
        const QXmlStreamAttributes attributes = m_reader.attributes();
        return {columnOf(attributes.value(QLatin1String("r"))),
                attributes.value(QLatin1String("t")).startsWith(QLatin1Char('s'))};
    }

    QString takeSharedValue()
    {
        if (!m_reader.enterChild())
            return QLatin1String("");
        const QString value = sharedString(m_reader.takeText());
        while (m_reader.enterChild())
            m_reader.skip();
        return value;
    }

    QString takeValue()
    {
        QString value = QLatin1String("");
        int count = 0;
        while (m_reader.enterChild()) {
            if (!m_reader.is("v"))
                m_reader.skip();
            else if (++count == 1)
                value = m_reader.takeText();
            else
                m_reader.skip();
        }
        return count > 1 ? QString(QLatin1String("")) : value;
    }

    // The digits in front count. Empty for an index that the table does not have.
    QString sharedString(const QString &text) const
    {
        std::size_t index = 0;
        bool isNumber = false;
        for (const QChar character : text) {
            if (!isNumber && character.isSpace())
                continue;
            const int digit = character.unicode() - '0';
            if (digit < 0 || digit > 9)
                break;
            isNumber = true;
            index = index * 10 + static_cast<std::size_t>(digit);
            if (index >= m_sharedStrings.size())
                break;
        }
        const bool exists = isNumber && index < m_sharedStrings.size();
        return exists ? m_sharedStrings[index] : QString(QLatin1String(""));
    }

    void checkColumn(unsigned column)
    {
        if (column > maxColumns)
            m_reader.fail(QStringLiteral("A sheet has at most %1 columns.").arg(maxColumns));
    }

    void fill(TestDataRecord &record, unsigned from, unsigned to)
    {
        if (from >= to || m_reader.hasFailed())
            return;
        m_fillers += to - from;
        if (m_fillers > maxFillers)
            m_reader.fail(QStringLiteral("The sheet has too many empty cells."));
        else
            fillEmptyCells(from, to, &record);
    }

    ElementReader m_reader;
    const std::vector<QString> &m_sharedStrings;
    TestDataSet *m_dataSet;
    XlsxRows *m_rows;
    bool m_hasDimension = false;
    unsigned m_width = 0;
    unsigned m_nextRow = 1;
    quint64 m_fillers = 0;
};

} // namespace

QString readSharedStrings(QIODevice *device, std::vector<QString> *strings)
{
    ElementReader reader(device);
    if (reader.enterRoot("sst")) {
        while (reader.enterChild()) {
            if (reader.is("si"))
                strings->push_back(takeSharedString(reader));
            else
                reader.skip();
        }
    }
    return reader.finish();
}

QString readSheetId(QIODevice *device, const QString &sheetName, QString *sheetId, bool *isFound)
{
    ElementReader reader(device);
    *isFound = false;
    if (!reader.enterRoot("workbook"))
        return QStringLiteral("No <workbook>");
    bool hasSheet = false;
    while (reader.enterChild() && !reader.is("sheets"))
        reader.skip();
    if (!reader.is("sheets"))
        return QStringLiteral("No <sheets>");
    while (reader.enterChild()) {
        hasSheet = hasSheet || reader.is("sheet");
        const QXmlStreamAttributes attributes = reader.attributes();
        if (reader.is("sheet") && attributes.value(QLatin1String("name")) == sheetName) {
            *isFound = true;
            *sheetId = attributes.value(QLatin1String("sheetId")).toString();
            return {};
        }
        reader.skip();
    }
    if (!hasSheet)
        return QStringLiteral("No <sheet>");
    return reader.errorText();
}

QString readSheet(QIODevice *device, const std::vector<QString> &sharedStrings,
                  TestDataSet *dataSet, XlsxRows *rows)
{
    return SheetReader(device, sharedStrings, dataSet, rows).read();
}

} // namespace Morvex
