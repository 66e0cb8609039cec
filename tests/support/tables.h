#pragma once

#include "shared/testdata.h"

#include <QStringList>

#include <vector>

namespace MorvexTest {

QStringList valuesOf(const Morvex::TestDataRecord *record);

/// The header, when there is one, and the records.
std::vector<QStringList> rowsOf(const Morvex::TestDataSet &set);

} // namespace MorvexTest
