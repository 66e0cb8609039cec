#pragma once

#include "morvex_export.h"
#include "shared/testdata.h"

namespace Morvex {

class XlsWorkbook;

/// A table in a sheet of an .xls workbook, read at construction; in the first sheet for an empty
/// name. It begins at the first cell with content near the upper left corner and ends at the first
/// empty header cell and the first empty row. Failures are reported in the message log and leave
/// the set without records. A date is a number, and a float has six digits.
class MORVEX_EXPORT ExcelTestDataSet : public TestDataSet
{
public:
    ExcelTestDataSet(const QString &fileName, const QString &sheetName);
    ~ExcelTestDataSet() override;

private:
    void readTable(const XlsWorkbook &workbook);
    void fail(const QString &error);
    void failWithoutSheet(const QString &sheetName);
};

} // namespace Morvex
