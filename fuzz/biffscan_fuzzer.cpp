#include "fuzzinput.h"
#include "shared/workbook/biffscan.h"
#include "shared/workbook/compoundfile.h"

using namespace Morvex;

namespace {

void scanSheets(const QByteArray &stream)
{
    const BiffScan scan(stream);
    const int fewSheets = qMin(scan.sheetCount(), 4);
    for (int sheet = 0; sheet < fewSheets; ++sheet) {
        const auto cells = scan.cells(sheet).value_or(QHash<quint32, XlsCell>());
        require(cells.size() <= stream.size());
        for (const XlsCell &cell : cells)
            require(cell.text.size() <= stream.size());
        scan.hasBlank(sheet, 49, 0);
    }
}

} // namespace

// The bytes as the stream of a workbook and as the file around it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    QByteArray content(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
    scanSheets(content);
    const QByteArray signature = QByteArray::fromHex("d0cf11e0a1b11ae1");
    content.replace(0, signature.size(), signature);
    const QByteArray stream = readCompoundStream(content, {QStringLiteral("Workbook")});
    // A chain that goes in circles is followed until there is as much as in the file.
    const int largestSector = 4096;
    require(stream.size() <= content.size() + largestSector);
    scanSheets(stream);
    return 0;
}
