#include "shared/workbook/xlsworkbook.h"

#include "shared/workbook/biffscan.h"
#include "shared/workbook/compoundfile.h"

#include <QFile>

#include <freexl.h>

namespace Morvex {
namespace {

// Files of old are nothing but the stream.
QByteArray workbookStream(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    return isCompoundFile(content)
               ? readCompoundStream(content, {QStringLiteral("Workbook"), QStringLiteral("Book")})
               : content;
}

std::optional<XlsCell> cellOf(const FreeXL_CellValue &value)
{
    switch (value.type) {
    case FREEXL_CELL_INT:
        return XlsCell{XlsCell::Integer, QString(), double(value.value.int_value)};
    case FREEXL_CELL_DOUBLE:
        return XlsCell{XlsCell::Float, QString(), value.value.double_value};
    case FREEXL_CELL_TEXT:
    case FREEXL_CELL_SST_TEXT:
    case FREEXL_CELL_DATE:
    case FREEXL_CELL_DATETIME:
    case FREEXL_CELL_TIME:
        return XlsCell{XlsCell::String, QString::fromUtf8(value.value.text_value), 0};
    default:
        return std::nullopt;
    }
}

} // namespace

XlsWorkbook::XlsWorkbook() = default;

XlsWorkbook::~XlsWorkbook()
{
    if (m_handle)
        freexl_close(m_handle);
}

bool XlsWorkbook::load(const QString &fileName)
{
    m_scan = std::make_unique<BiffScan>(workbookStream(fileName));
    if (isPasswordProtected())
        return true;
    // A workbook that the library does not understand may come back as a null handle without an
    // error. Without the scan the results of formulas would be missing.
    const int code = freexl_open(QFile::encodeName(fileName).constData(), &m_handle);
    return code == FREEXL_OK && m_handle &&
           freexl_get_info(m_handle, FREEXL_BIFF_SHEET_COUNT, &m_sheetCount) == FREEXL_OK &&
           m_scan->sheetCount() == sheetCount() && m_scan->canReadTexts();
}

bool XlsWorkbook::isPasswordProtected() const
{
    return m_scan && m_scan->hasPassword();
}

int XlsWorkbook::sheetCount() const
{
    return static_cast<int>(m_sheetCount);
}

QString XlsWorkbook::sheetName(int sheet) const
{
    const char *name = nullptr;
    freexl_get_worksheet_name(m_handle, static_cast<unsigned short>(sheet), &name);
    return QString::fromUtf8(name);
}

bool XlsWorkbook::selectSheet(int sheet)
{
    unsigned short columns = 0;
    if (freexl_select_active_worksheet(m_handle, static_cast<unsigned short>(sheet)) != FREEXL_OK ||
        freexl_worksheet_dimensions(m_handle, &m_rowCount, &columns) != FREEXL_OK)
        return false;
    m_columnCount = columns;
    m_sheet = sheet;
    const auto cells = m_scan->cells(sheet);
    if (cells)
        m_scannedCells = *cells;
    return cells.has_value();
}

std::optional<XlsCell> XlsWorkbook::cell(unsigned column, unsigned row) const
{
    if (row > BiffScan::maxRow || column > BiffScan::maxColumn)
        return std::nullopt;
    const auto scanned = m_scannedCells.constFind(BiffScan::place(row, column));
    if (scanned != m_scannedCells.constEnd())
        return *scanned;
    FreeXL_CellValue value;
    if (row >= m_rowCount || column >= m_columnCount ||
        freexl_get_cell_value(m_handle, row, static_cast<unsigned short>(column), &value) !=
            FREEXL_OK)
        return std::nullopt;
    return cellOf(value);
}

bool XlsWorkbook::hasCell(unsigned column, unsigned row) const
{
    return cell(column, row) || m_scan->hasBlank(m_sheet, row, column);
}

} // namespace Morvex
