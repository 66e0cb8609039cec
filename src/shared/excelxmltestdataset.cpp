#include "shared/excelxmltestdataset.h"

#include "shared/workbook/xlsxparts.h"
#include "shared/workbook/zippart.h"

#include <QFileInfo>

#include <cstdio>
#include <minizip/unzip.h>
#include <utility>
#include <vector>

namespace Morvex {
namespace {

using Extracted = std::pair<std::unique_ptr<ZipPart>, QString>;

QString notContained()
{
    return QStringLiteral("file is not contained in the archive!\n");
}

QString locationError(int code, const char *name)
{
    switch (code) {
    case UNZ_OK:
        return {};
    case UNZ_END_OF_LIST_OF_FILE:
        return notContained();
    case UNZ_PARAMERROR:
        return QStringLiteral("parameter error when extracting '%1' from archive! ")
            .arg(QString::fromUtf8(name));
    case UNZ_BADZIPFILE:
        return QStringLiteral("invalid zip archive file. ");
    case UNZ_CRCERROR:
        return QStringLiteral("crc check failed! ");
    default:
        return QStringLiteral("unknown error when extracting data '%1'.")
            .arg(QString::fromUtf8(name));
    }
}

// A stream of the part, or an error text.
Extracted extractFromZipArchive(const ZipArchive &zip, const char *name)
{
    const int caseSensitive = 1;
    const QString error = locationError(unzLocateFile(zip.handle(), name, caseSensitive), name);
    if (!error.isEmpty())
        return {nullptr, error};
    return {std::make_unique<ZipPart>(zip), QString()};
}

// Damage to the archive shows in the XML too, but as a consequence.
QString causeOf(const QString &xmlError, ZipPart &part)
{
    const QString damage = part.damage();
    return damage.isEmpty() ? xmlError : damage;
}

QString prefixed(const char *prefix, const QString &error)
{
    return error.isEmpty() ? error : QLatin1String(prefix) + error;
}

QString readStringTable(const ZipArchive &zip, XlsxBudget *budget, std::vector<QString> *strings)
{
    const char prefix[] = "testData Shared Strings: ";
    const Extracted part = extractFromZipArchive(zip, "xl/sharedStrings.xml");
    // A workbook without texts has no such part.
    if (part.second == notContained())
        return {};
    if (!part.first)
        return prefixed(prefix, part.second);
    return prefixed(prefix,
                    causeOf(readSharedStrings(part.first.get(), budget, strings), *part.first));
}

QString findSheet(const ZipArchive &zip, const QString &sheetName, QString *sheetId)
{
    const char prefix[] = ".xlsx file is corrupt: ";
    const Extracted part = extractFromZipArchive(zip, "xl/workbook.xml");
    if (!part.first)
        return prefixed(prefix, part.second);
    const QString error = causeOf(readSheetId(part.first.get(), sheetName, sheetId), *part.first);
    if (error.isEmpty() && sheetId->isNull())
        return QLatin1String("sheet not found: ") + sheetName;
    return prefixed(prefix, error);
}

void warnOfEmptyTexts(const QString &fileName, const XlsxRows &rows)
{
    QString reasons;
    if (rows.textsInCells > 0)
        reasons = QStringLiteral(" Stored in their cells: %1 (save the workbook with an office "
                                 "program).")
                      .arg(rows.textsInCells);
    if (rows.textsOfFormulas > 0)
        reasons +=
            QStringLiteral(" Results of formulas: %1 (replace the formulas by their values).")
                .arg(rows.textsOfFormulas);
    if (!reasons.isEmpty())
        std::fprintf(stderr, "morvexrunner: %s: there are texts that are read as empty.%s\n",
                     fileName.toLocal8Bit().constData(), reasons.toLocal8Bit().constData());
}

} // namespace

ExcelXmlTestDataSet::ExcelXmlTestDataSet(const QString &fileName, const QString &sheetName)
    : TestDataSet(fileName, ',', true)
{
    QString error = read(sheetName);
    if (error.isEmpty())
        return;
    if (error.endsWith(QLatin1Char('\n')))
        error.chop(1);
    setErrorText(error);
    std::fprintf(stderr, "morvexrunner: %s\n", error.toLocal8Bit().constData());
}

ExcelXmlTestDataSet::~ExcelXmlTestDataSet() = default;

QString ExcelXmlTestDataSet::read(const QString &sheetName)
{
    const ZipArchive zip(dataName());
    std::vector<QString> sharedStrings;
    XlsxBudget budget(QFileInfo(dataName()).size());
    QString error = readStringTable(zip, &budget, &sharedStrings);
    if (!error.isEmpty())
        return error;
    QString sheetId;
    if (sheetName.isEmpty())
        sheetId = QStringLiteral("1");
    else
        error = findSheet(zip, sheetName, &sheetId);
    if (!error.isEmpty())
        return error;
    const char prefix[] = "testData Sheet: ";
    const QString name = QLatin1String("xl/worksheets/sheet") + sheetId + QLatin1String(".xml");
    const Extracted part = extractFromZipArchive(zip, name.toUtf8().constData());
    if (!part.first)
        return prefixed(prefix, part.second);
    XlsxRows rows;
    error = readSheet(part.first.get(), sharedStrings, this, &budget, &rows);
    error = prefixed(prefix, causeOf(error, *part.first));
    if (!error.isEmpty())
        return error;
    warnOfEmptyTexts(dataName(), rows);
    take(std::move(rows));
    return {};
}

void ExcelXmlTestDataSet::take(XlsxRows rows)
{
    if (rows.header)
        setHeader(rows.header.release());
    for (auto &record : rows.records)
        addRecord(record.release());
}

} // namespace Morvex
