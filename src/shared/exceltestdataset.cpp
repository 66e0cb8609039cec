#include "shared/exceltestdataset.h"

#include "shared/workbook/xlsworkbook.h"

#include <cstdio>

namespace Morvex {
namespace {

const unsigned searchedDiagonals = 50;

struct Corner
{
    unsigned column;
    unsigned row;
};

bool hasContent(const std::optional<XlsCell> &cell)
{
    return cell && cell->type != XlsCell::Empty && !cell->asString().isEmpty();
}

// Along the diagonals from the upper right to the lower left.
std::optional<Corner> findCorner(const XlsWorkbook &workbook)
{
    for (unsigned diagonal = 0; diagonal < searchedDiagonals; ++diagonal) {
        for (unsigned row = 0; row <= diagonal; ++row) {
            if (hasContent(workbook.cell(diagonal - row, row)))
                return Corner{diagonal - row, row};
        }
    }
    // With a cell at the end of the search it is the header that is missing.
    if (workbook.hasCell(0, searchedDiagonals - 1))
        return Corner{0, searchedDiagonals - 1};
    return std::nullopt;
}

std::unique_ptr<TestDataRecord> readHeader(const XlsWorkbook &workbook, TestDataSet *dataSet,
                                           const Corner &corner)
{
    auto header = std::make_unique<TestDataRecord>(dataSet, -1);
    for (unsigned column = corner.column;; ++column) {
        const std::optional<XlsCell> cell = workbook.cell(column, corner.row);
        if (!hasContent(cell))
            return header;
        header->addValue(cell->toText());
    }
}

// Null for an empty row, which ends the table.
std::unique_ptr<TestDataRecord> readRecord(const XlsWorkbook &workbook, TestDataSet *dataSet,
                                           const Corner &start, int width)
{
    auto record = std::make_unique<TestDataRecord>(dataSet, -1);
    record->reserve(width);
    bool isEmpty = true;
    for (unsigned column = 0; column < static_cast<unsigned>(width); ++column) {
        const std::optional<XlsCell> cell = workbook.cell(start.column + column, start.row);
        const bool hasValue = cell && cell->type != XlsCell::Empty;
        const QString text = hasValue ? cell->toText() : QString();
        isEmpty = isEmpty && text.isEmpty();
        record->addValue(text.isNull() ? QString(QLatin1String("")) : text);
    }
    return isEmpty ? nullptr : std::move(record);
}

int findSheet(const XlsWorkbook &workbook, const QString &name)
{
    if (name.isEmpty())
        return 0;
    for (int sheet = 0; sheet < workbook.sheetCount(); ++sheet) {
        if (workbook.sheetName(sheet) == name)
            return sheet;
    }
    return -1;
}

} // namespace

ExcelTestDataSet::ExcelTestDataSet(const QString &fileName, const QString &sheetName)
    : TestDataSet(fileName, '$', true)
{
    XlsWorkbook workbook;
    if (!workbook.load(fileName)) {
        fail(QLatin1String("Couldn't load ") + fileName);
        return;
    }
    if (workbook.isPasswordProtected()) {
        fail(QStringLiteral("passwd protected"));
        return;
    }
    if (workbook.sheetCount() == 0) {
        fail(QStringLiteral("no sheets found"));
        return;
    }
    const int sheet = findSheet(workbook, sheetName);
    if (sheet < 0)
        failWithoutSheet(sheetName);
    else if (!workbook.selectSheet(sheet))
        fail(QLatin1String("Couldn't load ") + fileName);
    else
        readTable(workbook);
}

ExcelTestDataSet::~ExcelTestDataSet() = default;

void ExcelTestDataSet::readTable(const XlsWorkbook &workbook)
{
    const std::optional<Corner> corner = findCorner(workbook);
    if (!corner) {
        fail(QStringLiteral("no table found"));
        return;
    }
    std::unique_ptr<TestDataRecord> header = readHeader(workbook, this, *corner);
    if (header->count() == 0) {
        fail(QStringLiteral("no head line found"));
        return;
    }
    setHeader(header.release());
    for (Corner start = *corner;;) {
        ++start.row;
        std::unique_ptr<TestDataRecord> record =
            readRecord(workbook, this, start, this->header()->count());
        if (!record)
            break;
        addRecord(record.release());
    }
}

void ExcelTestDataSet::fail(const QString &error)
{
    setErrorText(error);
    qWarning("%s", error.toLocal8Bit().constData());
}

void ExcelTestDataSet::failWithoutSheet(const QString &sheetName)
{
    setErrorText(QLatin1String("sheet not found: ") + sheetName);
    std::fprintf(stderr, "morvexrunner: sheet not found: %s\n",
                 sheetName.toLocal8Bit().constData());
}

} // namespace Morvex
