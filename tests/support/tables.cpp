#include "support/tables.h"

namespace MorvexTest {

QStringList valuesOf(const Morvex::TestDataRecord *record)
{
    QStringList values;
    for (int column = 0; column < record->count(); ++column)
        values += record->valueAsString(column);
    return values;
}

std::vector<QStringList> rowsOf(const Morvex::TestDataSet &set)
{
    std::vector<QStringList> rows;
    if (set.header())
        rows.push_back(valuesOf(set.header()));
    for (int index = 0; index < set.count(); ++index)
        rows.push_back(valuesOf(set.record(index)));
    return rows;
}

} // namespace MorvexTest
