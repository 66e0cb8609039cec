#include "fuzzinput.h"
#include "shared/tsvtestdataset.h"

#include <QStringList>

#include <memory>
#include <vector>

using namespace Morvex;

namespace {

std::vector<QStringList> rowsOf(const TestDataSet &set)
{
    std::vector<QStringList> rows;
    for (int index = -1; index < set.count(); ++index) {
        const TestDataRecord *record = index < 0 ? set.header() : set.record(index);
        QStringList values;
        for (int column = 0; column < record->count(); ++column)
            values += record->valueAsString(column);
        rows.push_back(values);
    }
    return rows;
}

std::unique_ptr<TestDataSet> read(const QString &path)
{
    return std::unique_ptr<TestDataSet>(TestDataSet::createTestDataSet(path));
}

} // namespace

// Whatever is in the file: once it has been saved, which fills up short rows, it stays as it is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    for (const char *name : {"data.csv", "data.tsv", "data.txt"}) {
        const auto set = read(fuzzInputFile(bytes, size, name));
        if (!set)
            continue;
        const QString path = set->dataName();
        const char separator = set->getSep();
        require(set->save(QString()));
        TsvTestDataSet saved(path, separator);
        require(saved.save(QString()));
        require(rowsOf(TsvTestDataSet(path, separator)) == rowsOf(saved));
    }
    return 0;
}
