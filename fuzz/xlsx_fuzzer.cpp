#include "fuzzinput.h"
#include "shared/excelxmltestdataset.h"
#include "shared/workbook/xlsxparts.h"

#include <QBuffer>

using namespace Morvex;

namespace {

std::vector<QString> readStrings(QByteArray *xml)
{
    QBuffer device(xml);
    device.open(QIODevice::ReadOnly);
    std::vector<QString> strings;
    XlsxBudget budget(xml->size());
    // Also those before an error serve for rows.
    static_cast<void>(readSharedStrings(&device, &budget, &strings));
    return strings;
}

void readId(QByteArray *xml)
{
    QBuffer device(xml);
    device.open(QIODevice::ReadOnly);
    QString id;
    static_cast<void>(readSheetId(&device, QStringLiteral("a"), &id));
}

void readRows(QByteArray *xml, const std::vector<QString> &strings)
{
    QBuffer device(xml);
    device.open(QIODevice::ReadOnly);
    TestDataSet set(QString(), ',', true);
    XlsxRows rows;
    XlsxBudget budget(xml->size());
    const QString error = readSheet(&device, strings, &set, &budget, &rows);
    require(error.isEmpty() || (rows.records.empty() && !rows.header));
    const std::size_t maxRows = 1048576;
    require(rows.records.size() <= maxRows + 1);
}

} // namespace

// The bytes as an archive and as each part of one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    QByteArray xml(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
    readId(&xml);
    readRows(&xml, readStrings(&xml));
    const QString path = fuzzInputFile(bytes, size, "book.xlsx");
    for (const char *sheet : {"", "a"}) {
        const ExcelXmlTestDataSet set(path, sheet);
        require(set.errorText().isEmpty() || (set.count() == 0 && !set.header()));
    }
    return 0;
}
