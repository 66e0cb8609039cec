#include "shared/xlsxparts.h"

#include "shared/xmlguard.h"

#include <QXmlStreamReader>

namespace Morvex {
namespace {

const unsigned maxRows = 1048576;
const unsigned maxColumns = 16384;
// Of all cells and rows that a sheet does not have and that are filled in.
const quint64 maxFillers = 32 * 1024 * 1024;

// Moves through the elements of a document from outside. After an error there are no more of them.
class ElementReader
{
public:
    explicit ElementReader(QIODevice *device)
        : m_xml(device)
    {
        m_xml.setNamespaceProcessing(false);
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
        takePieces([&text](const QStringRef &piece) {
            if (text.isEmpty())
                text = piece.toString();
            else
                text += piece;
        });
        return text;
    }

    // The same, for a caller that does not need the whole text.
    template <typename Take>
    void takePieces(Take take)
    {
        while (!m_xml.atEnd()) {
            const QXmlStreamReader::TokenType token = m_xml.readNext();
            if (token == QXmlStreamReader::Characters)
                take(m_xml.text());
            else if (token == QXmlStreamReader::StartElement)
                skip();
            else if (token == QXmlStreamReader::EndElement)
                return;
        }
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

// The number that a text begins with, behind white space.
class LeadingNumber
{
public:
    void read(const QStringRef &text)
    {
        for (const QChar character : text) {
            if (m_state == Before && character.isSpace())
                continue;
            const int digit = character.unicode() - '0';
            if (m_state == Behind || digit < 0 || digit > 9) {
                m_state = Behind;
                return;
            }
            m_state = Within;
            m_hasDigit = true;
            m_value = qMin(m_value * 10 + static_cast<std::size_t>(digit), maxValue);
        }
    }

    bool isBelow(std::size_t end) const { return m_hasDigit && m_value < end; }
    std::size_t value() const { return m_value; }

private:
    static constexpr std::size_t maxValue = 0xffffffff;

    enum { Before, Within, Behind } m_state = Before;
    bool m_hasDigit = false;
    std::size_t m_value = 0;
};

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
        if (m_nextRow < number)
            reserveFillers(quint64(number - m_nextRow) * (m_width + 1));
        for (; m_nextRow < number && !m_reader.hasFailed(); ++m_nextRow) {
            auto record =
                std::make_unique<TestDataRecord>(m_dataSet, static_cast<int>(m_nextRow) - 1);
            record->reserve(static_cast<int>(m_width));
            fillEmptyCells(1, m_width + 1, record.get());
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
        // Cells may come without a reference, or with that of one before.
        checkColumn(static_cast<unsigned>(record.count()));
        record.addValue(cell.hasSharedString ? takeSharedValue() : takeValue());
        return cell.column;
    }

    // The attributes must be out of the way before the parser goes on: it would copy them.
    Cell currentCell() const
    {
        Cell cell{0, false};
        const QXmlStreamAttributes attributes = m_reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            const QStringRef name = attribute.qualifiedName();
            if (name == QLatin1String("r"))
                cell.column = columnOf(attribute.value());
            else if (name == QLatin1String("t"))
                cell.hasSharedString = attribute.value().startsWith(QLatin1Char('s'));
        }
        return cell;
    }

    QString takeSharedValue()
    {
        if (!m_reader.enterChild())
            return QLatin1String("");
        LeadingNumber index;
        m_reader.takePieces([&index](const QStringRef &piece) { index.read(piece); });
        while (m_reader.enterChild())
            m_reader.skip();
        return index.isBelow(m_sharedStrings.size()) ? m_sharedStrings[index.value()]
                                                     : QString(QLatin1String(""));
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

    void checkColumn(unsigned column)
    {
        if (column > maxColumns)
            m_reader.fail(QStringLiteral("A sheet has at most %1 columns.").arg(maxColumns));
    }

    void fill(TestDataRecord &record, unsigned from, unsigned to)
    {
        if (from < to && reserveFillers(to - from))
            fillEmptyCells(from, to, &record);
    }

    bool reserveFillers(quint64 count)
    {
        m_fillers += count;
        if (m_fillers > maxFillers)
            m_reader.fail(QStringLiteral("The sheet has too many empty cells."));
        return !m_reader.hasFailed();
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
