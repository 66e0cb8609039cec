#pragma once

#include "test/testresult.h"

#include <vector>

namespace MorvexTest {

/// An entry of @p type with all other fields that any entry may have set to distinct values, table
/// differences included.
Morvex::TestResult::Entry fullEntry(Morvex::TestResult::ResultType type);

/// The types of all entries, in order.
std::vector<Morvex::TestResult::ResultType> allTypes();

/// The places of two entries, and all of their other fields, are equal.
bool areEqual(const Morvex::TestResult::Entry &a, const Morvex::TestResult::Entry &b);

} // namespace MorvexTest
