#include "test/report/testresultelement.h"

#include "shared/xmltext.h"
#include "test/report/countertable.h"
#include "test/report/resultlabels.h"

namespace Morvex {
namespace {

void addInfo(XmlElement &element, const TestResult::Entry &entry)
{
    const QLatin1String info("info");
    if (!entry.vpName.isEmpty())
        element.addAttribute(info, entry.vpName);
    if (!entry.info.isEmpty())
        element.addAttribute(entry.vpName.isEmpty() ? info : QLatin1String("extra"), entry.info);
}

} // namespace

XmlElement flatReportElement()
{
    XmlElement element(QLatin1String("MorvexReport"));
    element.addAttribute(QLatin1String("version"), QStringLiteral("1.2"));
    return element;
}

XmlElement testResultElement(const TestResult::Entry &entry, Iso8601Time &times)
{
    XmlElement element(QLatin1String("testresult"));
    element.addAttribute(QLatin1String("time"), times.isoDate(entry.time));
    element.addAttribute(QLatin1String("result"), resultName(entry.type));
    element.addAttribute(QLatin1String("message"), escapeControls(entry.message));
    const QString line = entry.line.toString();
    if (!line.isEmpty())
        element.addAttribute(QLatin1String("line"), line);
    addInfo(element, entry);
    element.setText(escapeControls(entry.details));
    return element;
}

XmlElement summaryElement(const TestReportGenerator &generator)
{
    XmlElement element(QLatin1String("summary"));
    for (const CounterRow &row : counterTable())
        element.addAttribute(row.name, generator.resultCount(row.key));
    return element;
}

} // namespace Morvex
