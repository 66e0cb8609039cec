#pragma once

#include "shared/workbook/xlscell.h"

#include <QHash>
#include <QString>

#include <memory>
#include <optional>

namespace Morvex {

class BiffScan;

/// An .xls workbook, open for reading. The one place that knows the library behind it.
class XlsWorkbook
{
public:
    XlsWorkbook();
    ~XlsWorkbook();

    XlsWorkbook(const XlsWorkbook &) = delete;
    XlsWorkbook &operator=(const XlsWorkbook &) = delete;

    /// Once. False for a file that can't be read as a whole. An encrypted one is loaded, without
    /// sheets.
    bool load(const QString &fileName);
    bool isPasswordProtected() const;

    int sheetCount() const;
    QString sheetName(int sheet) const;
    /// Needed before cells are read. False when the sheet can't be read.
    bool selectSheet(int sheet);
    /// Of the selected sheet. Nothing for a cell without content.
    std::optional<XlsCell> cell(unsigned column, unsigned row) const;
    /// Whether the selected sheet has the cell, be it without content.
    bool hasCell(unsigned column, unsigned row) const;

private:
    const void *m_handle = nullptr;
    std::unique_ptr<BiffScan> m_scan;
    unsigned m_sheetCount = 0;
    int m_sheet = 0;
    unsigned m_rowCount = 0;
    unsigned m_columnCount = 0;
    QHash<quint32, XlsCell> m_scannedCells;
};

} // namespace Morvex
