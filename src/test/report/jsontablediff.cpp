#include "test/report/jsontablediff.h"

#include "test/output/jsonobject.h"
#include "test/report/resultlabels.h"

namespace Morvex {
namespace {

std::string whole(JsonObject &object)
{
    std::string json;
    object.write(json, false);
    return json;
}

std::string propertiesOf(const TableDiff::Cell &cell)
{
    std::vector<std::string> properties;
    for (auto property = cell.properties.cbegin(); property != cell.properties.cend(); ++property) {
        JsonObject object;
        object.add(QLatin1String("name"), property.key());
        object.add(QLatin1String("value"), property.value().toString());
        properties.push_back(whole(object));
    }
    return jsonArray(properties);
}

std::string cellsOf(const TableDiff::Subject &subject)
{
    std::vector<std::string> cells;
    for (const TableDiff::Cell &cell : subject.cells) {
        JsonObject object;
        object.addValue(QLatin1String("properties"), propertiesOf(cell));
        cells.push_back(whole(object));
    }
    return jsonArray(cells);
}

// Without a cell, as a broken stream may bring it, the numbers are unknown.
std::string diffValue(const TableDiff::Subject &subject)
{
    JsonObject object;
    const TableDiff::Cell *first = subject.cells.isEmpty() ? nullptr : &subject.cells.first();
    switch (subject.type) {
    case TableDiff::Subject::CELL:
        if (first) {
            object.addInteger(QLatin1String("row"), first->row);
            object.addInteger(QLatin1String("column"), first->column);
        }
        break;
    case TableDiff::Subject::ROW:
        if (first)
            object.addInteger(QLatin1String("line"), first->row);
        object.addValue(QLatin1String("cells"), cellsOf(subject));
        break;
    case TableDiff::Subject::COLUMN:
        if (first)
            object.addInteger(QLatin1String("index"), first->column);
        object.addValue(QLatin1String("cells"), cellsOf(subject));
        break;
    }
    return whole(object);
}

} // namespace

std::string jsonOf(const FList<TableDiff::Element> &elements)
{
    std::vector<std::string> values;
    for (const TableDiff::Element &element : elements) {
        JsonObject object;
        object.add(QLatin1String("elementType"), differenceName(element.kind));
        object.add(QLatin1String("diffType"), subjectName(element.subject.type));
        object.addValue(QLatin1String("diffValue"), diffValue(element.subject));
        values.push_back(whole(object));
    }
    return jsonArray(values);
}

} // namespace Morvex
