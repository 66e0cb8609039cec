#include "runner/coveragepage.h"

#include "shared/browserelement.h"

#include <QStringList>

#include <algorithm>

namespace Morvex {
namespace {

const char pageStart[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>UI coverage</title>
<style>
:root { color-scheme: light dark; }
body { font: 15px/1.5 system-ui, sans-serif; max-width: 60rem; margin: 2rem auto; padding: 0 1rem; }
ul { list-style: none; padding-left: 1.5rem; margin: 0; }
summary { cursor: pointer; }
.class { opacity: .7; font-size: .85em; }
body > ul { padding-left: 0; }
.never, .used { white-space: nowrap; }
.never { font-weight: bold; }
.never::before { content: "\25CB  "; }
.used::before { content: "\25CF  "; }
meter { width: 8rem; vertical-align: middle; }
@media (max-width: 30rem) {
    ul { padding-left: 1rem; }
    meter { width: 5rem; }
}
</style>
</head>
<body>
<main>
)";
const char pageEnd[] = "</main>\n</body>\n</html>\n";

// All of it is said only of what is whole.
QString percentageOf(const BrowserElement &element)
{
    const double percentage = element.coveragePercentage(true);
    const double mostOfAPart = 99.9;
    return QString::number(percentage < 100 ? qMin(percentage, mostOfAPart) : 100, 'f', 1);
}

QString meterOf(const BrowserElement &element)
{
    return QStringLiteral("<meter min=\"0\" max=\"100\" value=\"%1\"></meter> %2")
        .arg(percentageOf(element), coverageText(element));
}

QString nameOf(const BrowserElement &element)
{
    return QStringLiteral("%1 <span class=\"class\">%2</span>")
        .arg(element.displayName().toHtmlEscaped(), element.className().toHtmlEscaped());
}

QString countsOf(const BrowserElement &element)
{
    QStringList counts;
    const QStringList names = element.coverageNames();
    for (const QString &name : names) {
        const int count = element.coverage(name);
        counts += QStringLiteral("<span class=\"%1\">%2 %3</span>")
                      .arg(count > 0 ? QStringLiteral("used") : QStringLiteral("never"),
                           name.toHtmlEscaped(),
                           count > 0 ? QString::number(count) : QStringLiteral("never"));
    }
    return counts.join(QLatin1String(", "));
}

bool hasUnused(const BrowserElement &element)
{
    return element.coverageActual(false) < element.coverageExpected(false);
}

void appendUnused(const BrowserElement &element, QString *html)
{
    if (hasUnused(element)) {
        *html += QStringLiteral("<li>%1: %2</li>\n").arg(nameOf(element), countsOf(element));
    }
    for (const BrowserElement *child : element.children())
        appendUnused(*child, html);
}

void appendTree(const BrowserElement &element, QString *html)
{
    const QString counts = countsOf(element);
    const QString line =
        counts.isEmpty() ? nameOf(element) : nameOf(element) + QLatin1String(": ") + counts;
    if (element.children().isEmpty()) {
        *html += QStringLiteral("<li>%1</li>\n").arg(line);
        return;
    }
    *html += QStringLiteral("<li><details open><summary>%1 %2</summary>\n<ul>\n")
                 .arg(line, meterOf(element));
    for (const BrowserElement *child : element.children())
        appendTree(*child, html);
    *html += QLatin1String("</ul></details></li>\n");
}

} // namespace

QString coverageText(const BrowserElement &element)
{
    return QStringLiteral("%1 % (%2 of %3)")
        .arg(percentageOf(element), QString::number(element.coverageActual(true)),
             QString::number(element.coverageExpected(true)));
}

QList<const BrowserElement *> leastCoveredFirst(const BrowserElement &root)
{
    QList<const BrowserElement *> windows;
    for (const BrowserElement *window : root.children()) {
        if (window->coverageExpected(true) > 0)
            windows += window;
    }
    std::stable_sort(windows.begin(), windows.end(),
                     [](const BrowserElement *a, const BrowserElement *b) {
                         return a->coveragePercentage(true) < b->coveragePercentage(true);
                     });
    return windows;
}

QByteArray coveragePage(const BrowserElement &root)
{
    QString html = QString::fromLatin1(pageStart);
    html += QStringLiteral("<h1>UI coverage</h1>\n<p>%1</p>\n").arg(meterOf(root));
    const QList<const BrowserElement *> windows = leastCoveredFirst(root);
    html += QLatin1String("<h2>Never used</h2>\n");
    for (const BrowserElement *window : windows) {
        if (window->coverageActual(true) == window->coverageExpected(true))
            continue;
        html +=
            QStringLiteral("<h3>%1</h3>\n<p>%2</p>\n<ul>\n").arg(nameOf(*window), meterOf(*window));
        appendUnused(*window, &html);
        html += QLatin1String("</ul>\n");
    }
    html += QLatin1String("<h2>All elements</h2>\n<ul>\n");
    for (const BrowserElement *window : windows)
        appendTree(*window, &html);
    html += QLatin1String("</ul>\n");
    return html.toUtf8() + pageEnd;
}

} // namespace Morvex
