#include "shared/testdata.h"

#include "shared/exceltestdataset.h"
#include "shared/excelxmltestdataset.h"
#include "shared/tsvparser.h"
#include "shared/tsvtestdataset.h"

#include <QFileInfo>

namespace Morvex {
namespace {

const char detected = 0;

// A format is a workbook, read by its own class, or a delimited file.
struct Format
{
    QLatin1String suffix;
    TestDataSet *(*createWorkbook)(const QString &fileName, const QString &sheetName);
    // Of delimited files: the separator whatever the file holds, or `detected`, and then that of a
    // file in which none can be detected.
    char separator;
    char fallback;
};

template <typename Set>
TestDataSet *createWorkbook(const QString &fileName, const QString &sheetName)
{
    return new Set(fileName, sheetName);
}

const Format formats[] = {
    {QLatin1String("xls"), createWorkbook<ExcelTestDataSet>, 0, 0},
    {QLatin1String("xlsx"), createWorkbook<ExcelXmlTestDataSet>, 0, 0},
    {QLatin1String("tsv"), nullptr, '\t', 0},
    {QLatin1String("csv"), nullptr, detected, ','},
};

const Format otherFormat = {QLatin1String(""), nullptr, detected, 0};

const Format &formatOf(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix();
    for (const Format &format : formats) {
        if (suffix == format.suffix)
            return format;
    }
    return otherFormat;
}

// The number of separators in a line when all lines have as many, and any at all; otherwise -1.
int scoreOf(const TsvParser &parser, const QStringList &lines, char separator)
{
    int score = -1;
    for (const QString &line : lines) {
        const int count = parser.countSeparator(line, separator);
        if (count < 1 || (score >= 0 && count != score))
            return -1;
        score = count;
    }
    return score;
}

QStringList firstLines(TsvParser &parser)
{
    const int maxLines = 3;
    QStringList lines;
    while (lines.size() < maxLines) {
        const QString line = parser.nextLine();
        if (line.isEmpty())
            break;
        lines += line;
    }
    return lines;
}

// 0 when the first lines have none in common.
char detectSeparator(TsvParser &parser)
{
    const QStringList lines = firstLines(parser);
    const int comma = scoreOf(parser, lines, ',');
    const int semicolon = scoreOf(parser, lines, ';');
    const int tab = scoreOf(parser, lines, '\t');
    if (comma < 0 && semicolon < 0 && tab < 0)
        return 0;
    if (semicolon > comma)
        return tab > semicolon ? '\t' : ';';
    return tab > comma ? '\t' : ',';
}

TestDataSet *createDelimited(const QString &fileName, const Format &format)
{
    TsvParser parser(fileName);
    char separator = format.separator;
    if (separator == detected)
        separator = detectSeparator(parser);
    if (separator == 0)
        separator = format.fallback;
    return separator == 0 ? nullptr : new TsvTestDataSet(&parser, separator);
}

} // namespace

TestDataSet *TestDataSet::createTestDataSet(const QString &fileName)
{
    const Format &format = formatOf(fileName);
    if (format.createWorkbook)
        return format.createWorkbook(fileName, QString());
    return createDelimited(fileName, format);
}

TestDataSet *TestDataSet::createTestDataSetExcel(const QString &fileName, const QString &sheetName)
{
    const Format &format = formatOf(fileName);
    return format.createWorkbook ? format.createWorkbook(fileName, sheetName) : nullptr;
}

} // namespace Morvex
