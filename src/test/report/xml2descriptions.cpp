#include "test/report/xml2descriptions.h"

#include "test/report/resultlabels.h"
#include "test/reportgeneratorshared.h"

#include <utility>

namespace Morvex {
namespace {

void addFailedProperty(XmlElement &result, const TestResult::Entry &entry)
{
    result.addChild(
        descriptionElement(vpObjectFromMsg(entry.message, true), QLatin1String("object")));
    result.addChild(
        descriptionElement(vpPropertyFromMsg(entry.message), QLatin1String("property")));
    QString expected;
    QString actual;
    expectedAndActualValueFromMsg(entry.details, &expected, &actual);
    if (!actual.isNull())
        result.addChild(descriptionElement(actual, QLatin1String("failedValue")));
}

void addFailedScreenshot(XmlElement &result, const TestResult::Entry &entry)
{
    result.addChild(
        descriptionElement(vpObjectFromMsg(entry.message, false), QLatin1String("object")));
    const QString image = vpFailedImgFromMsg(entry.details);
    if (!image.isEmpty())
        result.addChild(descriptionElement(image, QLatin1String("failedImage")));
}

XmlElement createCellElement(const TableDiff::Cell &cell)
{
    XmlElement element(QLatin1String("cell"));
    for (auto it = cell.properties.cbegin(); it != cell.properties.cend(); ++it) {
        XmlElement property(QLatin1String("property"));
        property.addAttribute(QLatin1String("name"), it.key());
        property.setText(it.value().toString());
        element.addChild(std::move(property));
    }
    return element;
}

void addCells(XmlElement &parent, const FList<TableDiff::Cell> &cells)
{
    for (const TableDiff::Cell &cell : cells)
        parent.addChild(createCellElement(cell));
}

void createSubjectElement(XmlElement &parent, const TableDiff::Subject &subject)
{
    const FList<TableDiff::Cell> &cells = subject.cells;
    if (subject.type == TableDiff::Subject::CELL) {
        addCells(parent, cells);
        return;
    }
    const bool isRow = subject.type == TableDiff::Subject::ROW;
    XmlElement element(subjectName(subject.type));
    if (!cells.isEmpty()) {
        const TableDiff::Cell &first = cells.first();
        element.addAttribute(isRow ? QLatin1String("line") : QLatin1String("index"),
                             isRow ? first.row : first.column);
    }
    addCells(element, cells);
    parent.addChild(std::move(element));
}

XmlElement createDiffElement(const TableDiff::Element &difference)
{
    XmlElement element(differenceName(difference.kind));
    createSubjectElement(element, difference.subject);
    return element;
}

} // namespace

XmlElement emptyDescription(QLatin1String type)
{
    XmlElement element(QLatin1String("description"));
    if (!type.isEmpty())
        element.addAttribute(QLatin1String("type"), type);
    return element;
}

XmlElement descriptionElement(const QString &text, QLatin1String type)
{
    XmlElement element = emptyDescription(type);
    element.setText(text);
    return element;
}

void injectFailedVPInfo(XmlElement &result, const TestResult::Entry &entry)
{
    if (entry.type != TestResult::FAIL && entry.type != TestResult::XPASS)
        return;
    switch (entry.vpType) {
    case TestResult::PROPERTY_VP:
        addFailedProperty(result, entry);
        break;
    case TestResult::SCREENSHOT_VP:
    case TestResult::VISUAL_VP:
        addFailedScreenshot(result, entry);
        break;
    case TestResult::NO_VP:
    case TestResult::TABLE_VP:
        break;
    }
}

void injectTableDiff(XmlElement &result, const TestResult::Entry &entry)
{
    if (entry.vpType != TestResult::TABLE_VP || entry.tableDiff.isEmpty())
        return;
    result.addChild(
        descriptionElement(vpObjectFromMsg(entry.message, false), QLatin1String("object")));
    XmlElement tableDiff(QLatin1String("tablediff"));
    for (const TableDiff::Element &difference : entry.tableDiff)
        tableDiff.addChild(createDiffElement(difference));
    result.addChild(std::move(tableDiff));
}

} // namespace Morvex
