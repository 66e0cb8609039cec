#pragma once

#include "morvex_export.h"
#include "shared/workbook/biffsheet.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace Morvex {

class BiffRecord;

/// An .xls workbook of any version, open for reading. What it takes of memory is a multiple of the
/// size of the file, whatever that says of its sheets.
class MORVEX_EXPORT XlsWorkbook
{
public:
    XlsWorkbook() = default;

    XlsWorkbook(const XlsWorkbook &) = delete;
    XlsWorkbook &operator=(const XlsWorkbook &) = delete;

    // Once one of these. False when what is needed of all sheets can't be read. An encrypted
    // workbook is loaded, but its sheets can't be read.

    bool load(const QString &fileName);
    /// The stream in a compound file, which is the whole of an old one.
    bool loadStream(const QByteArray &stream);

    bool isPasswordProtected() const { return m_hasPassword; }

    int sheetCount() const { return static_cast<int>(m_sheets.size()); }
    /// Empty for the sheet of an old file, which has none.
    QString sheetName(int sheet) const;
    /// Needed before cells are read. False when the sheet can't be read.
    bool selectSheet(int sheet);
    /// Of the selected sheet. Nothing for a cell without content.
    std::optional<XlsCell> cell(unsigned column, unsigned row) const;
    /// Whether the selected sheet has the cell, if only without content.
    bool hasCell(unsigned column, unsigned row) const;
    std::size_t cellCount() const { return m_selected.cellCount(); }

private:
    struct Sheet
    {
        quint32 offset;
        // Of the name, before which is its length.
        std::string_view name;
    };

    void take(const BiffRecord &record, quint32 end);
    void begin(const BiffRecord &bof);
    std::string_view stream() const;

    QByteArray m_stream;
    bool m_hasPassword = false;
    bool m_hasCodePage = false;
    std::vector<Sheet> m_sheets;
    BiffForm m_form;
    quint32 m_selectedOffset = 0;
    BiffSheet m_selected;
};

} // namespace Morvex
