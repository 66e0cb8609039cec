#pragma once

#include "shared/testdata.h"
#include "support/archive.h"
#include "support/tables.h"
#include "support/test.h"

namespace MorvexTest {

using Rows = std::vector<QStringList>;

/// Opens the first sheet when none is named.
inline std::unique_ptr<Morvex::TestDataSet> openBook(const QString &path,
                                                     const QString &sheet = QString())
{
    return std::unique_ptr<Morvex::TestDataSet>(
        sheet.isEmpty() ? Morvex::TestDataSet::createTestDataSet(path)
                        : Morvex::TestDataSet::createTestDataSetExcel(path, sheet));
}

/// The XML of a sheet with these rows.
inline QByteArray worksheet(const QByteArray &dimension, const QByteArray &rows)
{
    return "<?xml version=\"1.0\"?>\n<worksheet xmlns=\"http://schemas.openxmlformats.org/"
           "spreadsheetml/2006/main\"><dimension ref=\"" +
           dimension + "\"/><sheetData>" + rows + "</sheetData></worksheet>";
}

/// Reads workbooks at one path of a temporary directory.
class WorkbookTest : public testing::Test
{
protected:
    /// The rows of an archive with this sheet; what was printed goes to `messages`.
    Rows rowsOfSheet(const QByteArray &sheet, const QByteArray &sharedStrings = QByteArray())
    {
        ArchiveParts parts = {{"xl/worksheets/sheet1.xml", sheet}};
        if (!sharedStrings.isNull())
            parts.emplace_back("xl/sharedStrings.xml", sharedStrings);
        writeArchive(path, parts);
        return rowsOfFile();
    }

    Rows rowsOfFile(const QString &sheetName = QString())
    {
        Rows rows;
        messages = standardErrorOf([&] {
            const auto set = openBook(path, sheetName);
            rows = rowsOf(*set);
            error = set->errorText();
        });
        return rows;
    }

    QTemporaryDir dir;
    QString path = dir.filePath("book.xlsx");
    std::string messages;
    QString error;
};

} // namespace MorvexTest
