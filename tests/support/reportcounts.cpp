#include "support/reportcounts.h"

#include "test/testreportgeneratorfactory.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include <functional>
#include <gtest/gtest.h>

namespace MorvexTest {
namespace {

// What each number is called in the summaries.
struct Number
{
    const char *key;
    const char *attribute;
    const char *label;
};

const Number numbers[] = {
    {"tests", "tests", "Tests"},
    {"fails", "fails", "Fails"},
    {"passes", "passes", "Passes"},
    {"testcases", "testcases", "Test Cases"},
    {"errors", "errors", "Errors"},
    {"fatals", "fatals", "Fatals"},
    {"warnings", "warnings", "Warnings"},
    {"xfails", "expected_fails", "Expected Fails"},
    {"xpasses", "unexpected_passes", "Unexpected Passes"},
};

Counts fromNumbers(const std::function<QString(const Number &)> &textOf)
{
    Counts counts;
    for (const Number &number : numbers) {
        bool isNumber = false;
        counts[number.key] = textOf(number).toInt(&isNumber);
        EXPECT_TRUE(isNumber) << number.label;
    }
    return counts;
}

Counts fromTypes(const std::function<int(const char *)> &countOf)
{
    Counts counts;
    counts["fails"] = countOf("FAIL") + countOf("XPASS");
    counts["passes"] = countOf("PASS") + countOf("XFAIL");
    counts["tests"] = counts["fails"] + counts["passes"];
    counts["errors"] = countOf("ERROR");
    counts["fatals"] = countOf("FATAL");
    return counts;
}

Counts flatSummary(const XmlDocument &document)
{
    return fromNumbers([&document](const Number &number) {
        return document.text(qPrintable(QString("//summary/@") + number.attribute));
    });
}

Counts nestedResults(const XmlDocument &document)
{
    return fromTypes([&document](const char *type) {
        const QString path("//*[self::x2:result or self::x2:message][@type='%1']");
        return document.count(qPrintable(path.arg(type)));
    });
}

Counts spreadsheetSummary(const XmlDocument &document)
{
    const QString row("/ss:Workbook/ss:Worksheet[2]//ss:Row[ss:Cell[1]/ss:Data='%1']"
                      "/ss:Cell[2]/ss:Data[@ss:Type='Number']");
    return fromNumbers([&](const Number &number) {
        QString label = number.attribute;
        label[0] = label[0].toUpper();
        return document.text(qPrintable(row.arg(label)));
    });
}

void expectTotalsOfTestCases(const XmlDocument &document)
{
    EXPECT_EQ(document.text("/testsuite/@tests").toInt(), document.count("/testsuite/testcase"));
    EXPECT_EQ(document.text("/testsuite/@failures").toInt(),
              document.count("/testsuite/testcase/failure"));
    EXPECT_EQ(document.text("/testsuite/@errors").toInt(),
              document.count("/testsuite/testcase/error"));
}

// Each result is a test case here.
Counts resultTestCases(const XmlDocument &document)
{
    expectTotalsOfTestCases(document);
    return {{"fails", document.count("/testsuite/testcase/failure")},
            {"errors+fatals", document.count("/testsuite/testcase/error")},
            {"passes", document.count("/testsuite/testcase[not(*)]")}};
}

// Here the log of the run has the results, a line each.
Counts loggedResults(const XmlDocument &document)
{
    expectTotalsOfTestCases(document);
    const QString log = document.text("/testsuite/system-out");
    return fromTypes([&log](const char *type) { return log.count(QString(" [%1] ").arg(type)); });
}

} // namespace

const std::vector<ClassicFormat> &classicFormats()
{
    using Reader = Counts (*)(const XmlDocument &);
    using Factory = Morvex::TestReportGeneratorFactory;
    static const std::vector<ClassicFormat> formats = [] {
        const std::map<QString, Reader> readers{
            {"xml", flatSummary},        {"xmlIncremental", flatSummary}, {"xml2", nestedResults},
            {"xls", spreadsheetSummary}, {"xmljunit", resultTestCases},   {"junit", loggedResults},
        };
        std::vector<ClassicFormat> all;
        for (const Factory::Keyword &keyword : Factory::keywords()) {
            const QString name = keyword.name;
            if (keyword.target == Factory::File && name != "stdout" && !name.startsWith("zip"))
                all.push_back({name.toStdString(), readers.at(name.section('.', 0, 0)),
                               !keyword.traits.testFlag(Factory::NeedsSummary)});
        }
        return all;
    }();
    return formats;
}

namespace {

Counts countsOfXml3(const QByteArray &content)
{
    const XmlDocument document(content, XmlDocument::NoNamespaces);
    EXPECT_EQ(document.error(), "");
    return fromTypes([&document](const char *type) {
        return document.count(qPrintable(QString("//*[@type='%1']").arg(type)));
    });
}

Counts countsOfJson(const QByteArray &content)
{
    QJsonParseError error;
    EXPECT_TRUE(QJsonDocument::fromJson(content, &error).isObject())
        << error.errorString().toStdString();
    // Quotes within texts are escaped.
    return fromTypes([&content](const char *type) {
        return content.count(QByteArray("\"result\":\"") + type + '"');
    });
}

} // namespace

Counts countsOfResultsFile(const QString &file, const QByteArray &content)
{
    const std::map<QString, Counts (*)(const QByteArray &)> readers{
        {"results.xml", countsOfXml3},
        {"results.json", countsOfJson},
        {"data/results-v1.js", countsOfWebReport}};
    return readers.at(file)(content);
}

Counts countsOfWebReport(const QByteArray &content)
{
    const QByteArray push = "data.push( ";
    const int start = content.lastIndexOf(push) + push.size();
    const int end = content.lastIndexOf(" );");
    EXPECT_LT(start, end);
    return countsOfJson(content.mid(start, end - start));
}

Counts countsOfConsole(const QByteArray &content)
{
    Counts counts = fromNumbers([&content](const Number &number) {
        const QRegularExpression line(QString("\nNumber of %1:\t *([0-9]+)\n").arg(number.label));
        // The console may show zero bytes, at which the shorter form ends.
        return line.match(QString::fromUtf8(content.constData(), content.size())).captured(1);
    });
    counts["errors+fatals"] = counts["errors"] + counts["fatals"];
    return counts;
}

} // namespace MorvexTest
