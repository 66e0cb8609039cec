#include "test/tablediff.h"

#include "shared/text/patternbounds.h"
#include "shared/xmltablerange.h"
#include "test/verification/diff.h"

#include <QColor>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace Morvex {
namespace {

// Those of QRegExp; a text without any is a pattern that stands for itself.
const char specialCharacters[] = "\\^$.|?*+()[]{}";

// A non-empty expected text is a pattern as well, and then the colour is not looked at.
bool cellEqual(const XmlTableRange::Cell &expected, const XmlTableRange::Cell &actual)
{
    const bool isSameText = expected.text == actual.text;
    // As a pattern such a text would match itself and nothing else.
    const bool isPlain = !expected.text.empty() &&
                         expected.text.find_first_of(specialCharacters) == std::string::npos;
    if (isSameText && (isPlain || expected.color == actual.color)) {
        // One that it matched before is not what it is shown by.
        actual.pattern.reset();
        return true;
    }
    if (isPlain || expected.text.empty())
        return false;
    if (!expected.pattern) {
        const QString pattern = QString::fromStdString(expected.text);
        if (!isBoundedPattern(pattern))
            return false;
        expected.pattern.emplace(pattern);
    }
    if (!expected.pattern->exactMatch(QString::fromStdString(actual.text)))
        return false;
    actual.pattern = expected.pattern;
    return true;
}

bool table_row_equal(const XmlTableRange::Row &expected, const XmlTableRange::Row &actual)
{
    return std::equal(expected.begin(), expected.end(), actual.begin(), actual.end(), cellEqual);
}

QString shownText(const XmlTableRange::Cell &cell)
{
    const QString text = QString::fromStdString(cell.text);
    const QString pattern = cell.pattern ? cell.pattern->pattern() : QString();
    return pattern.isEmpty() ? text : pattern;
}

TableDiff::Subject asDiffRow(int rowNumber, const XmlTableRange::Row &row)
{
    TableDiff::Subject subject;
    subject.type = TableDiff::Subject::ROW;
    int column = 0;
    for (const XmlTableRange::Cell &content : row) {
        TableDiff::Cell cell;
        cell.row = rowNumber;
        cell.column = column++;
        cell.properties.insert(QStringLiteral("text"), shownText(content));
        const auto [alpha, red, green, blue] = content.color;
        if (content.color != TableRange::Color{})
            cell.properties.insert(QStringLiteral("backgroundColor"),
                                   QColor(red, green, blue, alpha));
        subject.cells.append(std::move(cell));
    }
    return subject;
}

// Numbers the rows: an insertion after deletions takes the number of the oldest one that has no
// insertion yet, so that a changed row shows as a deletion and an insertion of one number.
class RowNumbers
{
public:
    explicit RowNumbers(FList<TableDiff::Element> *out)
        : m_out(out)
    {
    }

    void add(Diff::Operation operation, const XmlTableRange::Row &item)
    {
        switch (operation) {
        case Diff::DELETE:
            append(TableDiff::Element::DELETION, m_row, item);
            ++m_pending;
            ++m_row;
            m_afterDelete = true;
            break;
        case Diff::INSERT:
            if (m_pending == 0 && m_afterDelete) {
                append(TableDiff::Element::INSERTION, m_row - 1, item);
                break;
            }
            append(TableDiff::Element::INSERTION, m_row - m_pending, item);
            if (m_pending > 0)
                --m_pending;
            break;
        case Diff::EQUAL:
            ++m_row;
            m_pending = 0;
            m_afterDelete = false;
            break;
        }
    }

private:
    void append(TableDiff::Element::Kind kind, int row, const XmlTableRange::Row &item)
    {
        m_out->append({kind, asDiffRow(row, item)});
    }

    FList<TableDiff::Element> *m_out;
    int m_row = 0;
    int m_pending = 0;
    bool m_afterDelete = false;
};

} // namespace

bool operator==(const TableDiff::Cell &a, const TableDiff::Cell &b)
{
    return a.row == b.row && a.column == b.column && a.properties == b.properties;
}

bool operator==(const TableDiff::Subject &a, const TableDiff::Subject &b)
{
    return a.type == b.type && a.cells == b.cells;
}

bool operator==(const TableDiff::Element &a, const TableDiff::Element &b)
{
    return a.kind == b.kind && a.subject == b.subject;
}

bool table_diff_xml(const std::string &expectedXml, const std::string &actualXml,
                    FList<TableDiff::Element> *out)
{
    XmlTableRange expected;
    XmlTableRange actual;
    return expected.loadContentFromXml(expectedXml) && actual.loadContentFromXml(actualXml) &&
           table_diff_range(expected, actual, out);
}

bool table_diff_range(const XmlTableRange &expected, const XmlTableRange &actual,
                      FList<TableDiff::Element> *out)
{
    std::vector<std::pair<Diff::Operation, XmlTableRange::Row>> script;
    auto writer = std::back_inserter(script);
    Diff::diff(expected.rowsBegin(), expected.rowsEnd(), actual.rowsBegin(), actual.rowsEnd(),
               writer, table_row_equal);
    RowNumbers numbers(out);
    for (const auto &[operation, row] : script)
        numbers.add(operation, row);
    Diff::diff_cleanup(script);
    return out->isEmpty();
}

} // namespace Morvex
