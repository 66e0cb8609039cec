#include "support/reportcounts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <functional>
#include <gtest/gtest.h>

namespace MorvexTest {
namespace {

Counts flatSummary(const XmlDocument &document)
{
    const std::map<std::string, const char *> attributes{
        {"tests", "@tests"},
        {"fails", "@fails"},
        {"passes", "@passes"},
        {"testcases", "@testcases"},
        {"errors", "@errors"},
        {"fatals", "@fatals"},
        {"warnings", "@warnings"},
        {"xfails", "@expected_fails"},
        {"xpasses", "@unexpected_passes"},
    };
    Counts counts;
    for (const auto &[key, attribute] : attributes) {
        const std::string path = std::string("/MorvexReport/summary/") + attribute;
        counts[key] = document.text(path.c_str()).toInt();
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

Counts nestedResults(const XmlDocument &document)
{
    return fromTypes([&](const char *type) {
        return document.count(QString("//*[self::x2:result or self::x2:message][@type='%1']")
                                  .arg(type)
                                  .toUtf8()
                                  .constData());
    });
}

Counts spreadsheetSummary(const XmlDocument &document)
{
    const QStringList labels =
        document.texts("/ss:Workbook/ss:Worksheet[2]//ss:Row/ss:Cell[1]/ss:Data");
    const QStringList numbers = document.texts(
        "/ss:Workbook/ss:Worksheet[2]//ss:Row/ss:Cell[2]/ss:Data[@ss:Type='Number']");
    Counts counts;
    for (int i = 0; i < labels.size(); ++i) {
        std::string key = labels.at(i).toLower().toStdString();
        if (key == "expected_fails")
            key = "xfails";
        if (key == "unexpected_passes")
            key = "xpasses";
        counts[key] = numbers.value(i, "-1").toInt();
    }
    return counts;
}

// Each result is a test case here.
Counts resultTestCases(const XmlDocument &document)
{
    Counts counts;
    counts["fails"] = document.count("/testsuite/testcase/failure");
    counts["errors+fatals"] = document.count("/testsuite/testcase/error");
    counts["passes"] = document.count("/testsuite/testcase[not(*)]");
    EXPECT_EQ(document.text("/testsuite/@tests").toInt(), document.count("/testsuite/testcase"));
    EXPECT_EQ(document.text("/testsuite/@failures").toInt(), counts["fails"]);
    EXPECT_EQ(document.text("/testsuite/@errors").toInt(), counts["errors+fatals"]);
    return counts;
}

// Here the log of the run tells the results, a line each.
Counts loggedResults(const XmlDocument &document)
{
    const QString log = document.text("/testsuite/system-out");
    EXPECT_EQ(document.text("/testsuite/@tests").toInt(), document.count("/testsuite/testcase"));
    EXPECT_EQ(document.text("/testsuite/@failures").toInt(),
              document.count("/testsuite/testcase/failure"));
    EXPECT_EQ(document.text("/testsuite/@errors").toInt(),
              document.count("/testsuite/testcase/error"));
    return fromTypes([&](const char *type) { return log.count(QString(" [%1] ").arg(type)); });
}

// How often each type of result stands in the value, whatever else it holds.
void addResults(const QJsonValue &value, std::map<QString, int> &types)
{
    for (const QJsonValue &element : value.toArray())
        addResults(element, types);
    const QJsonObject object = value.toObject();
    if (object.contains("result"))
        ++types[object.value("result").toString()];
    for (const QJsonValue &member : object)
        addResults(member, types);
}

Counts countsOfResults(const QJsonValue &value)
{
    std::map<QString, int> types;
    addResults(value, types);
    return fromTypes([&types](const char *type) { return types[type]; });
}

} // namespace

const std::vector<ClassicFormat> &classicFormats()
{
    static const std::vector<ClassicFormat> formats{
        {"xml", flatSummary, false},          {"xmlIncremental", flatSummary, false},
        {"xml2", nestedResults, true},        {"xml2.1", nestedResults, true},
        {"xml2.2", nestedResults, true},      {"xls", spreadsheetSummary, false},
        {"xmljunit", resultTestCases, false}, {"junit", loggedResults, true},
    };
    return formats;
}

Counts countsOfXml3(const QByteArray &content)
{
    const XmlDocument document(content, XmlDocument::NoNamespaces);
    EXPECT_EQ(document.error(), "");
    return fromTypes([&document](const char *type) {
        return document.count(QString("//*[@type='%1']").arg(type).toUtf8().constData());
    });
}

Counts countsOfJson(const QByteArray &content)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return countsOfResults(document.object());
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
    const std::map<std::string, const char *> labels{
        {"testcases", "Test Cases"},  {"tests", "Tests"},
        {"errors", "Errors"},         {"fatals", "Fatals"},
        {"fails", "Fails"},           {"passes", "Passes"},
        {"xfails", "Expected Fails"}, {"xpasses", "Unexpected Passes"},
        {"warnings", "Warnings"},
    };
    Counts counts;
    for (const auto &[key, label] : labels) {
        const QRegularExpression line(QString("\nNumber of %1:\t *([0-9]+)\n").arg(label));
        const QRegularExpressionMatch match =
            line.match(QString::fromUtf8(content.constData(), content.size()));
        EXPECT_TRUE(match.hasMatch()) << label;
        counts[key] = match.captured(1).toInt();
    }
    counts["errors+fatals"] = counts["errors"] + counts["fatals"];
    return counts;
}

} // namespace MorvexTest
