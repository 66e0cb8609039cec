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

struct XlsxRows
{
    /// Row 1. Null when the sheet is empty, or does not number its rows.
    std::unique_ptr<TestDataRecord> header;
    std::vector<std::unique_ptr<TestDataRecord>> records;
};

/// Appends the texts of the shared string table.
MORVEX_EXPORT QString readSharedStrings(QIODevice *device, std::vector<QString> *strings);

/// Finds the id of the sheet of that exact name, which stays null when there is none.
MORVEX_EXPORT QString readSheetId(QIODevice *device, const QString &sheetName, QString *sheetId);

/// Reads the rows of a sheet as records of @p dataSet, to which they are not added.
MORVEX_EXPORT QString readSheet(QIODevice *device, const std::vector<QString> &sharedStrings,
                                TestDataSet *dataSet, XlsxRows *rows);

} // namespace Morvex
