#include "shared/workbook/xlsxparts.h"

#include "shared/workbook/xmlelementreader.h"

#include <algorithm>

namespace Morvex {
namespace {

const unsigned maxRows = 1048576;
const unsigned maxColumns = 16384;

const qint64 minBudget = 256 * 1024 * 1024;
const qint64 budgetPerByteOfFile = 32;
// Roughly what a record takes without its values, and a text without its characters.
const qint64 rowCost = 160;
const qint64 textCost = 32;

QString tooManyValues()
{
    return QStringLiteral("Its values take too much memory for the size of the file.");
}

QString textOf(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

// Plain text, or else that of its runs with a formatting each.
QString takeSharedString(XmlElementReader &reader)
{
    QString plain = QLatin1String("");
    QString rich = plain;
    while (reader.enterChild()) {
        if (reader.is("t")) {
            reader.appendText(&plain);
        } else if (reader.is("r")) {
            while (reader.enterChild("t"))
                reader.appendText(&rich);
        } else {
            reader.skip();
        }
    }
    return plain.isEmpty() ? rich : plain;
}

// The letters at its start, as a number in which A is 1. Stays beyond the last column once it is.
unsigned columnOf(std::string_view reference)
{
    unsigned column = 0;
    for (const char character : reference) {
        const int letter = character - 'A';
        if (letter < 0 || letter >= 26)
            break;
        column = std::min(column * 26 + static_cast<unsigned>(letter) + 1, maxColumns + 1);
    }
    return column;
}

// The last column of a range like "A1:C3", or of a single cell.
unsigned widthOf(std::string_view range)
{
    const std::size_t colon = range.find(':');
    return columnOf(colon == range.npos ? range : range.substr(colon + 1));
}

// The number that a text in pieces begins with, after white space.
class LeadingNumber
{
public:
    void read(std::string_view piece)
    {
        for (const char character : piece) {
            if (m_state == Before && isBlank(character))
                continue;
            const int digit = character - '0';
            if (m_state == After || digit < 0 || digit > 9) {
                m_state = After;
                return;
            }
            m_state = Within;
            m_hasDigit = true;
            m_value = std::min(m_value * 10 + static_cast<std::size_t>(digit), maxValue);
        }
    }

    bool isBelow(std::size_t end) const { return m_hasDigit && m_value < end; }
    std::size_t value() const { return m_value; }

private:
    static constexpr std::size_t maxValue = 0xffffffff;

    static bool isBlank(char character)
    {
        return character == ' ' || (character >= 9 && character <= 13);
    }

    enum { Before, Within, After } m_state = Before;
    bool m_hasDigit = false;
    std::size_t m_value = 0;
};

// Returns the element that is missing, null when none is.
const char *enterFirstSheet(XmlElementReader &reader)
{
    if (!reader.enterRoot("workbook"))
        return "<workbook>";
    if (!reader.enterChild("sheets"))
        return "<sheets>";
    return reader.enterChild("sheet") ? nullptr : "<sheet>";
}

class SheetReader
{
public:
    SheetReader(QIODevice *device, const std::vector<QString> &sharedStrings, TestDataSet *dataSet,
                XlsxBudget *budget)
        : m_reader(device)
        , m_sharedStrings(sharedStrings)
        , m_dataSet(dataSet)
        , m_budget(budget)
    {
    }

    QString read(XlsxRows *rows)
    {
        if (m_reader.enterRoot("worksheet"))
            readWorksheet();
        if (m_reader.finish().isEmpty())
            fillRows();
        if (!m_reader.hasFailed())
            takeRows(rows);
        return m_reader.finish();
    }

private:
    struct Row
    {
        std::unique_ptr<TestDataRecord> record;
        // After the last cell.
        unsigned column = 1;
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
        m_width = widthOf(m_reader.attribute("ref"));
        checkColumn(m_width);
        m_reader.skip();
    }

    void readRows()
    {
        while (m_reader.enterChild("row"))
            readRow();
    }

    void readRow()
    {
        const unsigned number = rowNumber();
        for (; m_nextRow < number && !m_reader.hasFailed(); ++m_nextRow)
            addRow(newRow(m_nextRow), m_nextRow);
        Row row = newRow(number);
        while (m_reader.enterChild("c"))
            readCell(row);
        addRow(std::move(row), number);
        m_nextRow = number + 1;
    }

    // 0 for a row that does not give it.
    unsigned rowNumber()
    {
        const unsigned number = textOf(m_reader.attribute("r")).toUInt();
        if (number > maxRows)
            m_reader.fail(QStringLiteral("A sheet can't have a row %1.").arg(number));
        return number;
    }

    Row newRow(unsigned number)
    {
        bound(m_budget->takeRow());
        Row row = {std::make_unique<TestDataRecord>(m_dataSet, static_cast<int>(number) - 1)};
        row.record->reserve(static_cast<int>(m_width));
        return row;
    }

    void addRow(Row row, unsigned number)
    {
        fill(row, m_width + 1);
        if (number == 1)
            m_header = std::move(row);
        else
            m_rows.push_back(std::move(row));
        if (m_rows.size() > maxRows)
            m_reader.fail(QStringLiteral("The sheet has too many rows."));
    }

    void readCell(Row &row)
    {
        const unsigned column = columnOf(m_reader.attribute("r"));
        checkColumn(column);
        fill(row, column);
        // Cells may come without a reference, or with that of one before.
        checkColumn(static_cast<unsigned>(row.record->count()));
        const std::string_view type = m_reader.attribute("t");
        m_textsInCells += type == "inlineStr" ? 1 : 0;
        m_textsOfFormulas += type == "str" ? 1 : 0;
        const bool hasSharedString = !type.empty() && type.front() == 's';
        const QString value = hasSharedString ? takeSharedValue() : takeValue();
        if (bound(hasSharedString ? m_budget->takeValues(1) : m_budget->takeText(value)))
            row.record->addValue(value);
        row.column = column + 1;
    }

    QString takeSharedValue()
    {
        if (!m_reader.enterChild())
            return QLatin1String("");
        LeadingNumber index;
        for (std::string_view piece; m_reader.nextPiece(&piece);)
            index.read(piece);
        while (m_reader.enterChild())
            m_reader.skip();
        return index.isBelow(m_sharedStrings.size()) ? m_sharedStrings[index.value()]
                                                     : QString(QLatin1String(""));
    }

    QString takeValue()
    {
        QString value = QLatin1String("");
        int count = 0;
        while (m_reader.enterChild("v")) {
            if (++count == 1)
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

    // Up to the column.
    void fill(Row &row, unsigned column)
    {
        if (row.column >= column || !bound(m_budget->takeValues(column - row.column)))
            return;
        fillEmptyCells(row.column, column, row.record.get());
        row.column = column;
    }

    bool bound(bool isWithinBudget)
    {
        if (!isWithinBudget)
            m_reader.fail(tooManyValues());
        return !m_reader.hasFailed();
    }

    // Once more: the width may come after the rows.
    void fillRows()
    {
        if (m_header.record)
            fill(m_header, m_width + 1);
        for (Row &row : m_rows)
            fill(row, m_width + 1);
    }

    void takeRows(XlsxRows *rows)
    {
        rows->textsInCells = m_textsInCells;
        rows->textsOfFormulas = m_textsOfFormulas;
        rows->header = std::move(m_header.record);
        rows->records.reserve(m_rows.size());
        for (Row &row : m_rows)
            rows->records.push_back(std::move(row.record));
    }

    XmlElementReader m_reader;
    const std::vector<QString> &m_sharedStrings;
    TestDataSet *m_dataSet;
    XlsxBudget *m_budget;
    Row m_header;
    std::vector<Row> m_rows;
    bool m_hasDimension = false;
    unsigned m_width = 0;
    unsigned m_nextRow = 1;
    int m_textsInCells = 0;
    int m_textsOfFormulas = 0;
};

} // namespace

XlsxBudget::XlsxBudget(qint64 fileSize)
    : m_left(minBudget + fileSize * budgetPerByteOfFile)
{
}

bool XlsxBudget::takeText(const QString &text)
{
    const auto reference = qint64(sizeof(QString));
    return take(text.isEmpty() ? reference
                               : reference + textCost + text.size() * qint64(sizeof(QChar)));
}

bool XlsxBudget::takeRow()
{
    return take(rowCost);
}

bool XlsxBudget::takeValues(qint64 count)
{
    return take(count * qint64(sizeof(QString)));
}

bool XlsxBudget::take(qint64 bytes)
{
    m_left -= bytes;
    return m_left >= 0;
}

QString readSharedStrings(QIODevice *device, XlsxBudget *budget, std::vector<QString> *strings)
{
    XmlElementReader reader(device);
    if (reader.enterRoot("sst")) {
        while (reader.enterChild("si")) {
            strings->push_back(takeSharedString(reader));
            if (!budget->takeText(strings->back()))
                reader.fail(tooManyValues());
        }
    }
    return reader.finish();
}

QString readSheetId(QIODevice *device, const QString &sheetName, QString *sheetId)
{
    XmlElementReader reader(device);
    const char *missing = enterFirstSheet(reader);
    if (missing) {
        const QString error = reader.finish();
        return error.isEmpty() ? QLatin1String("No ") + QLatin1String(missing) : error;
    }
    do {
        if (sheetId->isNull() && textOf(reader.attribute("name")) == sheetName)
            *sheetId = textOf(reader.attribute("sheetId"));
        reader.skip();
    } while (reader.enterChild("sheet"));
    return reader.finish();
}

QString readSheet(QIODevice *device, const std::vector<QString> &sharedStrings,
                  TestDataSet *dataSet, XlsxBudget *budget, XlsxRows *rows)
{
    return SheetReader(device, sharedStrings, dataSet, budget).read(rows);
}

} // namespace Morvex
