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
