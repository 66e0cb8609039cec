#include "support/sampleentries.h"

#include <QColor>

#include <tuple>

namespace MorvexTest {

using Morvex::FList;
using Morvex::LineInfo;
using Morvex::TableDiff;
using Morvex::TestResult;

namespace {

TableDiff::Element changedRow(TableDiff::Element::Kind kind, int row, const QString &text)
{
    TableDiff::Cell plain;
    plain.row = row;
    plain.properties.insert("text", text);
    TableDiff::Cell coloured = plain;
    coloured.column = 1;
    coloured.properties.insert("backgroundColor", QColor(255, 128, 0, 200));
    TableDiff::Element element;
    element.kind = kind;
    element.subject.type = TableDiff::Subject::ROW;
    element.subject.cells = {plain, coloured};
    return element;
}

auto fields(const TestResult::Entry &entry)
{
    return std::tie(entry.time, entry.type, entry.message, entry.details, entry.line, entry.stack,
                    entry.info, entry.vpCounter, entry.name, entry.tableDiff, entry.vpName,
                    entry.vpType, entry.summary, entry.description, entry.retry,
                    entry.attachmentType, entry.attachmentUri);
}

} // namespace

TestResult::Entry fullEntry(TestResult::ResultType type)
{
    TestResult::Entry entry;
    entry.time = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7));
    entry.type = type;
    entry.message = QString::fromUtf8("message äöü \U0001F600 <&>\"'");
    entry.details = "details\nsecond line\twith a tab\\and a backslash";
    entry.stack = {LineInfo("/suite/tst_a/script.js", 12), LineInfo("/suite/shared.js", 0)};
    entry.line = entry.stack.front();
    entry.info = "info";
    entry.vpCounter = 4;
    entry.name = "suite_name";
    entry.tableDiff = {changedRow(TableDiff::Element::DELETION, 3, "old"),
                       changedRow(TableDiff::Element::INSERTION, 3, "new")};
    entry.vpName = "VP1";
    entry.vpType = TestResult::TABLE_VP;
    entry.vpFile = QFileInfo("/suite/tst_a/points/VP1.xml");
    entry.summary = "summary";
    entry.description = "description";
    entry.retry = 2;
    entry.attachmentType = TestResult::SCREENSHOT_ATTACHMENT;
    entry.attachmentUri = "/results/shot 1.png";
    return entry;
}

std::vector<TestResult::ResultType> allTypes()
{
    std::vector<TestResult::ResultType> types;
    for (int type = TestResult::START; type < TestResult::NONE; ++type)
        types.push_back(static_cast<TestResult::ResultType>(type));
    return types;
}

bool areEqual(const TestResult::Entry &a, const TestResult::Entry &b)
{
    return fields(a) == fields(b) && a.vpFile.filePath() == b.vpFile.filePath();
}

} // namespace MorvexTest
