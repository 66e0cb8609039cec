#include "support/archive.h"
#include "support/scriptfixture.h"

#include <QFile>

using namespace MorvexTest;

using ScriptDataTest = ScriptFixture;

TEST_F(ScriptDataTest, ATableIsWalkedByEachKindOfLoop)
{
    runner.addFile("orders.csv", "name,amount\nApple,3\nPear\n");
    EXPECT_EQ(results("const t = data.open('orders.csv');\n"
                      "check.equal(t.fields, ['name', 'amount'], 'm'); log.info(t.count);\n"
                      "for (const r of t) log.info(r.field('name'), r.field('amount'));\n"
                      "t.forEach(function (r, i) { check.equal(r.values[0], "
                      "t.record(i).field('name'), i); });\n"
                      "log.info([...t].map(r => r.values), t.record(1).field('amount'));\n"
                      "check.equal(t.record(1), t.record(0), 'n');\n"),
              (QStringList{"PASS m|Got expected '[\"name\",\"amount\"]'.", "LOG 2|", "LOG Apple|3",
                           "LOG Pear|", "PASS 0|Got expected 'Apple'.",
                           "PASS 1|Got expected 'Pear'.", "LOG [[\"Apple\",\"3\"],[\"Pear\"]]|",
                           "FAIL n|Expected '{\"values\":[\"Apple\",\"3\"]}', got "
                           "'{\"values\":[\"Pear\"]}'."}));
}

TEST_F(ScriptDataTest, NoListLosesElementsWhenTheEngineFreesMemory)
{
    // A switch of the engine: whenever it allocates.
    runner.environment.insert("QV4_MM_AGGRESSIVE_GC", "1");
    runner.addFile("orders.csv", "name,amount\nApple,3\nPear,4\n");
    runner.addTestCase("tst_s",
                       "const t = data.open('orders.csv');\n"
                       "check.equal([t.fields, [...t].map(r => r.values), [...t].map(r => "
                       "r.field('name')), [...scriptArguments]], [['name', 'amount'], "
                       "[['Apple', '3'], ['Pear', '4']], ['Apple', 'Pear'], ['a', 'b c']], 'm');");
    output = runner.run({runner.suitePath(), "--scriptargs", "a", "b c"});
    EXPECT_EQ(output.status, 0) << output.standardOutput.toStdString();
}

TEST_F(ScriptDataTest, AValueIsThatOfItsRecordInWhateverOrderTheyAreAskedFor)
{
    QByteArray table = "a,b\n";
    for (int row = 0; row < 600; ++row)
        table += QByteArray::number(row) + (row % 300 ? ",x" + QByteArray::number(row) : "") + "\n";
    runner.addFile("long.csv", table);
    EXPECT_EQ(
        results("const t = data.open('long.csv'); let wrong = [];\n"
                "const look = row => { const r = t.record(row);\n"
                "  if (r.field('a') !== String(row) || r.field('b') !== (row % 300 ? 'x' + row"
                " : '')) wrong.push(row); };\n"
                "for (let i = 0; i < 600; ++i) look(i);\n"
                "for (let i = 0; i < 600; ++i) look(i * 7 % 600);\n"
                "for (let i = 599; i >= 0; --i) look(i);\n"
                "check.equal(wrong, [], 'm');"),
        QStringList("PASS m|Got expected '[]'."));
}

TEST_F(ScriptDataTest, ASheetIsReadByItsName)
{
    const QString path = runner.suitePath() + "/book.xlsx";
    runner.addTestCase("tst_s", "");
    writeArchive(path, {{"xl/workbook.xml", "<workbook><sheets><sheet name='Two' sheetId='2'/>"
                                            "</sheets></workbook>"},
                        {"xl/worksheets/sheet2.xml",
                         "<worksheet><sheetData><row r='1'><c r='A1'><v>7</v></c></row><row "
                         "r='2'><c r='A2'><v>8</v></c></row></sheetData></worksheet>"}});
    EXPECT_EQ(results("for (var r of data.open('book.xlsx', 'Two')) log.info(r.field(7));"),
              QStringList("LOG 8|"));
}

TEST_F(ScriptDataTest, WhatCannotBeReadIsThrownWithTheFileAndTheReason)
{
    runner.addFile("orders.tsv", "name\nApple\n");
    runner.addFile("notes.txt", "no table\n");
    runner.addFile("bad.xls", "no workbook\n");
    const std::pair<const char *, const char *> rows[] = {
        {"data.open('no.tsv')", "data.open: cannot read 'no.tsv': No such file or directory"},
        {"data.open('notes.txt')", "data.open: cannot read 'notes.txt': its first lines have no "
                                   "separator in common"},
        {"data.open('orders.tsv', 'A')",
         "data.open: cannot read 'orders.tsv': a file of this suffix has no sheets"},
        {"data.open('bad.xls')", "data.open: cannot read 'bad.xls': Couldn't load "},
        {"data.open('orders.tsv').record(1)", "there is no record 1 in '"},
        {"data.open('orders.tsv').record(0).field('Name')", "there is no field 'Name' in '"},
    };
    for (const auto &[call, message] : rows) {
        const QString line = results(call).value(0);
        EXPECT_TRUE(line.contains(QString("Error: ") + message)) << line.toStdString();
    }
}
