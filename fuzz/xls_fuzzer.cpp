#include "fuzzinput.h"
#include "shared/exceltestdataset.h"
#include "shared/workbook/compoundfile.h"
#include "shared/workbook/xlsworkbook.h"

using namespace Morvex;

namespace {

void readSheets(const QByteArray &stream)
{
    XlsWorkbook workbook;
    if (!workbook.loadStream(stream))
        return;
    const int fewSheets = qMin(workbook.sheetCount(), 4);
    for (int sheet = 0; sheet < fewSheets; ++sheet) {
        require(workbook.sheetName(sheet).size() <= 255);
        if (!workbook.selectSheet(sheet))
            continue;
        require(workbook.cellCount() <= static_cast<std::size_t>(stream.size()));
        for (unsigned row = 0; row < 50; ++row) {
            for (unsigned column = 0; column < 10; ++column)
                require(workbook.cell(column, row).value_or(XlsCell()).text.size() <=
                        stream.size());
        }
    }
}

} // namespace

// The bytes as the stream of a workbook and as the file around it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    QByteArray content(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
    readSheets(content);
    const ExcelTestDataSet set(fuzzInputFile(bytes, size, "book.xls"), QString());
    require(set.errorText().isEmpty() == (set.header() && set.header()->count() > 0));
    const QByteArray signature = QByteArray::fromHex("d0cf11e0a1b11ae1");
    content.replace(0, signature.size(), signature);
    const QByteArray stream = readCompoundStream(content, {QStringLiteral("Workbook")});
    // A chain that goes in circles is followed until there is as much as in the file.
    const int largestSector = 4096;
    require(stream.size() <= content.size() + largestSector);
    readSheets(stream);
    return 0;
}
