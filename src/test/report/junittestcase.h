#pragma once

#include "test/testresult.h"

#include <QString>

#include <vector>

namespace Morvex {

/// A test case of a JUnit file: one of the run, or a section of it that has results.
struct JUnitTestCase
{
    /// Without those around it, which the names of deep nesting would repeat in each level.
    QString name;
    std::size_t parent = 0;
    /// Which of the cases around it is at the depth whose names are the first that are
    /// left out, if it is deeper.
    std::size_t outer = 0;
    int depth = 0;
    /// Cases with the same names from the test case inwards have the same path.
    int path = 0;
    /// Which of its path it is, from 1.
    int number = 1;
    bool isSection = false;
    bool isShown = false;
    bool isLeftOut = false;
    qint64 milliseconds = 0;
    int results = 0;
    int failures = 0;
    int errors = 0;
    /// Places of its entries in the log of the suite, in order.
    std::vector<std::size_t> entries;

    /// @p place is that in the log of the suite.
    void add(const TestResult::Entry &entry, std::size_t place);
    /// Time and entries of a section that is not shown itself.
    void takeOver(JUnitTestCase &section);
    bool isError() const { return isShown && errors > 0; }
    bool isSkipped() const { return isLeftOut && results == 0; }
    bool isFailure() const { return isShown && errors == 0 && failures > 0; }
    QString failureMessage() const;
};

} // namespace Morvex
