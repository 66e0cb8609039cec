#pragma once

#include "shared/xlscell.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

namespace Morvex {

/// What the stream of an .xls workbook says of numbers, booleans, errors, the results of formulas
/// and texts with formatting in the cell. The library that reads the plain texts drops the results
/// and the formatted texts, shows booleans and errors as numbers, and turns a number into a date by
/// the look of its format.
class BiffScan
{
public:
    /// @p stream is empty for a workbook of another kind, which then has nothing to say.
    explicit BiffScan(const QByteArray &stream);

    /// Whether the content is encrypted.
    bool hasPassword() const { return m_hasPassword; }
    int sheetCount() const { return m_sheetOffsets.size(); }

    /// The cells of a sheet by place. Later ones win.
    QHash<quint32, XlsCell> cells(int sheet) const;
    static quint32 place(unsigned row, unsigned column) { return row << 16 | column; }

private:
    QByteArray m_stream;
    bool m_hasPassword = false;
    QVector<quint32> m_sheetOffsets;
    QByteArray m_codecName;
};

} // namespace Morvex
