#pragma once

#include "morvex_export.h"

#include "shared/testdata.h"

#include <QString>

#include <memory>
#include <vector>

class QIODevice;

namespace Morvex {

// Readers of the XML parts of a workbook, which may come from anywhere. Each returns an error text,
// empty on success, and reads to the end of the device. On an error there are no results.

/// Bounds what a workbook keeps in memory by the size of its file: a few bytes of an archive may
/// stand for any number of values.
class MORVEX_EXPORT XlsxBudget
{
public:
    explicit XlsxBudget(qint64 fileSize);

    /// False when there is no room for another text.
    bool takeText(const QString &text);
    /// The same for rows and for values that refer to a text or are empty.
    bool takeRow();
    bool takeValues(qint64 count);

private:
    bool take(qint64 bytes);

    qint64 m_left;
};

struct XlsxRows
{
    /// Row 1. Null when the sheet is empty, or does not number its rows.
    std::unique_ptr<TestDataRecord> header;
    std::vector<std::unique_ptr<TestDataRecord>> records;
    /// Cells with texts that are read as empty: those not in the table of shared strings, and those
    /// of formulas.
    int textsInCells = 0;
    int textsOfFormulas = 0;
};

/// Appends the texts of the shared string table.
[[nodiscard]] MORVEX_EXPORT QString readSharedStrings(QIODevice *device, XlsxBudget *budget,
                                                      std::vector<QString> *strings);

/// Finds the id of the sheet of that exact name, which stays null when there is none.
[[nodiscard]] MORVEX_EXPORT QString readSheetId(QIODevice *device, const QString &sheetName,
                                                QString *sheetId);

/// Reads the rows of a sheet as records of @p dataSet, to which they are not added.
[[nodiscard]] MORVEX_EXPORT QString readSheet(QIODevice *device,
                                              const std::vector<QString> &sharedStrings,
                                              TestDataSet *dataSet, XlsxBudget *budget,
                                              XlsxRows *rows);

} // namespace Morvex
