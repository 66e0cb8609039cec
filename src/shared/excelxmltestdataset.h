#pragma once

#include "morvex_export.h"
#include "shared/testdata.h"

namespace Morvex {

struct XlsxRows;

/// A sheet of an .xlsx workbook, read at construction; that with the id 1 for an empty name.
/// Failures are reported on standard error and leave the set without header and records, as does
/// an empty sheet. Cells have the raw text of the file: a date is a number, and the text of a
/// formula, or one that is stored in its cell, is empty, with a warning there.
class MORVEX_EXPORT ExcelXmlTestDataSet : public TestDataSet
{
public:
    ExcelXmlTestDataSet(const QString &fileName, const QString &sheetName);
    ~ExcelXmlTestDataSet() override;

private:
    [[nodiscard]] QString read(const QString &sheetName);
    void take(XlsxRows rows);
};

} // namespace Morvex
