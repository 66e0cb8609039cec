#pragma once

#include "morvex_export.h"
#include "shared/workbook/xlscell.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <optional>

class QTextCodec;

namespace Morvex {

/// What the stream of an .xls workbook says of numbers, booleans, errors, the results of formulas
/// and texts with formatting in the cell. The library that reads the plain texts drops the results
/// and the formatted texts, shows booleans and errors as numbers, and turns a number into a date by
/// the look of its format.
class MORVEX_EXPORT BiffScan
{
public:
    /// @p stream is empty for a workbook of another kind, which then has nothing to say.
    explicit BiffScan(const QByteArray &stream);

    /// False when texts are in a code page that is not known.
    bool canReadTexts() const { return m_codec || !m_hasCodePage; }
    /// Whether the content is encrypted.
    bool hasPassword() const { return m_hasPassword; }
    int sheetCount() const { return m_sheetOffsets.size(); }

    static const unsigned maxRow = 0xffff;
    static const unsigned maxColumn = 0xff;

    /// The cells of a sheet by place. Later ones win. A place stands for rows and columns up to
    /// the greatest ones. Nothing when no sheet begins where the workbook says.
    std::optional<QHash<quint32, XlsCell>> cells(int sheet) const;
    static quint32 place(unsigned row, unsigned column) { return row << 16 | column; }
    /// Whether the sheet has a cell there with a format and no content.
    bool hasBlank(int sheet, unsigned row, unsigned column) const;

private:
    void begin(int bofType, int version, int content);

    QByteArray m_stream;
    bool m_hasPassword = false;
    QVector<quint32> m_sheetOffsets;
    int m_valueOffset = 6;
    bool m_hasCodePage = false;
    QTextCodec *m_codec = nullptr;
};

} // namespace Morvex
