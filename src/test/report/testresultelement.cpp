#include "test/report/testresultelement.h"

#include "shared/xmltext.h"
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
    element.addAttribute(QLatin1String("message"), showControls(entry.message));
    const QString line = entry.line.toString();
    if (!line.isEmpty())
        element.addAttribute(QLatin1String("line"), line);
    addInfo(element, entry);
    element.setText(showControls(entry.details));
    return element;
}

XmlElement summaryElement(const TestReportGenerator &generator)
{
    struct Count
    {
        QLatin1String attribute;
        QLatin1String key;
    };
    static const Count counts[] = {
        {QLatin1String("tests"), QLatin1String("tests")},
        {QLatin1String("fails"), QLatin1String("fails")},
        {QLatin1String("passes"), QLatin1String("passes")},
        {QLatin1String("expected_fails"), QLatin1String("xfails")},
        {QLatin1String("unexpected_passes"), QLatin1String("xpasses")},
        {QLatin1String("testcases"), QLatin1String("testcases")},
        {QLatin1String("errors"), QLatin1String("errors")},
        {QLatin1String("fatals"), QLatin1String("fatals")},
        {QLatin1String("warnings"), QLatin1String("warnings")},
    };
    XmlElement element(QLatin1String("summary"));
    for (const Count &count : counts)
        element.addAttribute(count.attribute, generator.resultCount(count.key));
    return element;
}

} // namespace Morvex
