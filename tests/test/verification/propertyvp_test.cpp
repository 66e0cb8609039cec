#include "support/verification.h"

#include "shared/testdata.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray check(const QByteArray &object, const QByteArray &property, const QByteArray &type,
                 const QByteArray &value, const QByteArray &more = "")
{
    return "<Verification object=\"" + object + "\" property='" + property + "' type='" + type +
           "' " + more + "><base64EncodedValue>" + value.toBase64() +
           "</base64EncodedValue></Verification>";
}

const char propertiesType[] = "version='2' type='ObjectProperties'";

} // namespace

class PropertyVPTest : public VerificationTest
{
protected:
    PropertyVPTest()
    {
        auto *layout = new QVBoxLayout(&window);
        window.setObjectName("window");
        for (QWidget *widget : {static_cast<QWidget *>(&box), static_cast<QWidget *>(&number),
                                static_cast<QWidget *>(&edit)})
            layout->addWidget(widget);
        box.setObjectName("box");
        number.setObjectName("number");
        edit.setObjectName("edit");
    }

    QString resultOf(const QByteArray &element)
    {
        verify(propertiesType, element);
        const QStringList results = takeResults();
        return results.size() == 1 ? results[0] : results.join('\n') + " (not one)";
    }

    QWidget window;
    QCheckBox box;
    QDoubleSpinBox number;
    QLineEdit edit;
};

TEST_F(PropertyVPTest, ValuesAreComparedByTheTypeInTheFile)
{
    box.setChecked(true);
    number.setMaximum(3e9);
    number.setValue(1.5);
    number.setDecimals(2);
    window.setFixedSize(200, 100);
    edit.setText(QString::fromUtf8("\xc3\xa4<&'"));
    const std::tuple<const char *, const char *, const char *, const char *, bool> rows[] = {
        {"box", "checked", "bool", "TRUE", true},
        {"box", "checked", "bool", "1", false},
        {"box", "checked", "string", "true", true},
        {"number", "value", "double", "1.5", true},
        {"number", "value", "double", "1.50001", false},
        {"number", "value", "double", "x", false},
        {"number", "decimals", "int", "2", true},
        {"number", "decimals", "long", "2", true},
        {"number", "decimals", "double", "2", true},
        {"number", "decimals", "", "2", true},
        {"number", "minimum", "long", "2147483648", true},
        {"number", "maximum", "long", "3000000000", false},
        {"edit", "text", "string", "\xc3\xa4<&'", true},
        {"edit", "text", "int", "0", false},
        {"edit", "echoMode", "string", "Normal", true},
        {"edit", "echoMode", "int", "0", true},
        {"window", "size.width", "int", "200", true},
        {"edit", "window.size..height", "int", "100", true},
        {"edit", "parent.objectName", "string", "window", true},
        {"window", "", "string", "{name='window' type='QWidget'}", true},
    };
    for (const auto &[object, property, type, value, isEqual] : rows) {
        const QString result = resultOf(check(object, property, type, value));
        EXPECT_TRUE(result.startsWith(isEqual ? "PASS " : "FAIL "))
            << object << " " << property << " " << value << result.toStdString();
        EXPECT_TRUE(
            result.endsWith(QString("' and '%1' are %2")
                                .arg(QString::fromUtf8(value), isEqual ? "equal" : "not equal")))
            << result.toStdString();
    }
}

TEST_F(PropertyVPTest, WhatCantBeComparedIsAnErrorWhateverIsExpected)
{
    const std::pair<QByteArray, QString> rows[] = {
        {"<Verification object='edit' property='text' xfail='true'>plain</Verification>",
         "ERROR vp: Could not read property value|Value for property 'text' not readable"},
        {check("nothing", "text", "", "", "xfail='true'"),
         "ERROR vp: No such object 'nothing'|There is no object {name='nothing'}."},
        {check("edit", "colour", "", "", "xfail='true'"),
         "ERROR vp: No such property|Could not lookup property 'colour' on object 'edit'"},
        {check("window", "parent.text", "", ""),
         "ERROR vp: No such property|Could not lookup property 'parent' on object 'window'"},
        {check("edit", "text", "", "a", "valueType='DataField'"),
         "ERROR vp: Error doing object property comparison|Comparison failed because invalid test "
         "data record was passed for a data field"},
    };
    for (const auto &[element, result] : rows)
        EXPECT_EQ(resultOf(element), result);
}

TEST_F(PropertyVPTest, VersionOneHasItsValueAsPlainText)
{
    edit.setText("a");
    const QByteArray element =
        "<Verification object='edit' property='text' type='string'>a</Verification>";
    for (const char *version : {"", "version='1'"}) {
        EXPECT_EQ(verify(QByteArray(version) + " type='ObjectProperties'", element).summary(),
                  VPResult::SummaryPassed);
    }
    EXPECT_EQ(verify("version='2' type='ObjectProperties'", element).summary(),
              VPResult::SummaryFailed);
}

TEST_F(PropertyVPTest, DataFieldsTakeTheirValueFromTheRecord)
{
    TestDataSet data("/data/names.tsv", '\t', false);
    auto *header = new TestDataRecord(&data, -1);
    header->addValue("first name");
    data.setHeader(header);
    std::vector<const TestDataRecord *> records;
    for (const char *name : {"Ada", "Eve"}) {
        auto *row = new TestDataRecord(&data, int(records.size()));
        row->addValue(name);
        data.addRecord(row);
        records.push_back(row);
    }
    edit.setText("Ada");
    const QByteArray element =
        check("edit", "text", "string", "first name", "valueType='DataField'");
    const char *const results[] = {
        "PASS vp [names.tsv:first name:1]: Object property comparison of 'edit.text' passed|'Ada' "
        "and 'Ada' are equal",
        "FAIL vp [names.tsv:first name:2]: Object property comparison of 'edit.text' failed|'Ada' "
        "and 'Eve' are not equal"};
    for (int i = 0; i < 2; ++i) {
        record = records[i];
        EXPECT_EQ(resultOf(element), results[i]);
    }
}
