#include "test/report/resultlabels.h"

#include <array>

namespace Morvex {
namespace {

struct Label
{
    QLatin1String name;
    ResultColor color;
};

const std::array<Label, TestResult::NONE> labels{{
    {QLatin1String("START"), ResultColor::Blue},
    {QLatin1String("END"), ResultColor::Blue},
    {QLatin1String("START_TEST_CASE"), ResultColor::Blue},
    {QLatin1String("END_TEST_CASE"), ResultColor::Blue},
    {QLatin1String("START_SECTION"), ResultColor::Blue},
    {QLatin1String("END_SECTION"), ResultColor::Blue},
    {QLatin1String("SKIP_SECTION"), ResultColor::Blue},
    {QLatin1String("LOG"), ResultColor::Blue},
    {QLatin1String("FATAL"), ResultColor::Red},
    {QLatin1String("ERROR"), ResultColor::Red},
    {QLatin1String("PASS"), ResultColor::Green},
    {QLatin1String("FAIL"), ResultColor::Red},
    {QLatin1String("XFAIL"), ResultColor::Green},
    {QLatin1String("XPASS"), ResultColor::Red},
    {QLatin1String("WARNING"), ResultColor::Magenta},
    {QLatin1String("ATTACHMENT"), ResultColor::Blue},
    {QLatin1String("STARTVIDEOCAPTURE"), ResultColor::Blue},
    {QLatin1String("ENDVIDEOCAPTURE"), ResultColor::Blue},
}};

const Label &labelOf(TestResult::ResultType type)
{
    static const Label none{QLatin1String(""), ResultColor::Blue};
    const auto index = static_cast<std::size_t>(type);
    return index < labels.size() ? labels[index] : none;
}

} // namespace

QLatin1String resultName(TestResult::ResultType type)
{
    return labelOf(type).name;
}

ResultColor resultColor(TestResult::ResultType type)
{
    return labelOf(type).color;
}

QLatin1String differenceName(TableDiff::Element::Kind kind)
{
    switch (kind) {
    case TableDiff::Element::CONTEXT:
        break;
    case TableDiff::Element::INSERTION:
        return QLatin1String("insertion");
    case TableDiff::Element::DELETION:
        return QLatin1String("deletion");
    }
    return QLatin1String("context");
}

QLatin1String subjectName(TableDiff::Subject::Type type)
{
    switch (type) {
    case TableDiff::Subject::CELL:
        break;
    case TableDiff::Subject::ROW:
        return QLatin1String("row");
    case TableDiff::Subject::COLUMN:
        return QLatin1String("column");
    }
    return QLatin1String("cell");
}

QString nameOrUnnamed(const QString &name)
{
    return name.isEmpty() ? QStringLiteral("<unnamed>") : name;
}

QString startMessage(const QString &name)
{
    return QStringLiteral("Start '%1'").arg(name);
}

QString startDetails(const QString &name)
{
    return QStringLiteral("Test '%1' started").arg(name);
}

QString endMessage(const QString &name)
{
    return QStringLiteral("End '%1'").arg(name);
}

QString endDetails(const QString &name)
{
    return QStringLiteral("End of test '%1'").arg(name);
}

} // namespace Morvex
