#include "test/visualpointtest.h"

#include "support/filesizelimit.h"

#include <QApplication>

using namespace Morvex;
using namespace MorvexTest;

namespace {

const char passed[] = "PASS vp: Visual comparison of object 'form' passed|";
const char failed[] = "FAIL vp: Visual comparison of object 'form' failed|";

} // namespace

class TitanVPTest : public VisualPointTest
{
protected:
    QStringList resultsOf(const QByteArray &file)
    {
        verifyFile(file);
        return takeResults();
    }

    // The details up to what says where the snapshot is.
    QString failureOf(const QByteArray &file)
    {
        const QString line = resultsOf(file).value(0);
        EXPECT_TRUE(line.startsWith(failed)) << line.toStdString();
        return line.mid(int(qstrlen(failed))).section(" Object snapshot", 0, 0);
    }
};

TEST_F(TitanVPTest, ANewPointPassesWhereNothingButThePlaceOfTheWindowChanged)
{
    QByteArray point;
    {
        Form form;
        point = learn();
        EXPECT_EQ(resultsOf(point), QStringList(passed));
        form.window.move(300, 200);
        form.window.resize(700, 600);
        EXPECT_EQ(resultsOf(point), QStringList(passed));
    }
    Form again;
    QApplication::setActiveWindow(&again.window);
    again.button->setAttribute(Qt::WA_UnderMouse);
    for (QWidget *focus : std::initializer_list<QWidget *>{again.name, again.price, again.unit,
                                                           again.table, again.button}) {
        focus->setFocus();
        EXPECT_EQ(resultsOf(point), QStringList(passed)) << focus->metaObject()->className();
        EXPECT_TRUE(focus->hasFocus());
    }
    EXPECT_TRUE(again.button->underMouse());
    EXPECT_EQ(resultsOf(point), QStringList(passed));
    expectFail = true;
    EXPECT_EQ(verifyFile(point).summary(), VPResult::SummaryFailed);
    EXPECT_EQ(takeResults(), QStringList("XPASS vp: Visual comparison of object 'form' passed|"));
}

TEST_F(TitanVPTest, EachKindOfChangeFailsWithItsOwnText)
{
    const std::pair<const char *, std::function<void(Form &)>> rows[] = {
        {"Content matching error(s) found. ", [](Form &f) { f.name->setText("a b"); }},
        {"Content matching error(s) found. ",
         [](Form &f) { f.table->item(0, 0)->setText("Nuts"); }},
        {"Identifying properties matching error(s) found. ",
         [](Form &f) { f.form->setObjectName("form"), f.button->setObjectName("send"); }},
        {"Geometry error(s) found. Screenshot comparison error(s) found. ",
         [](Form &f) { f.mark->move(370, 2); }},
        {"Screenshot comparison error(s) found. ",
         [](Form &f) { f.count->setStyleSheet("background: red"); }},
        {"Hierarchical structure error(s) found. ",
         [](Form &f) { (new QPushButton(f.form))->show(); }},
    };
    for (const auto &[failure, change] : rows) {
        SCOPED_TRACE(failure);
        Form form;
        form.button->setObjectName("button");
        const QByteArray point = learn();
        change(form);
        EXPECT_EQ(failureOf(point), failure);
    }
}

TEST_F(TitanVPTest, WhiteSpaceIsComparedAsItIs)
{
    const std::tuple<const char *, const char *, bool> rows[] = {
        {"a  b", "a b", false},    {"a\tb", "a b", false},
        {"a\nb", "a b", false},    {" a\t", "a", false},
        {"a\n\nb", "a\nb", false}, {"a\r\nb", "a\nb", false},
        {"a\rb", "a\nb", false},   {" \t a \n\r\n \r", " \t a \n\r\n \r", true},
        {" \n\t", "", true},
    };
    Form form;
    for (const auto &[expected, actual, isEqual] : rows) {
        SCOPED_TRACE(expected);
        // Nothing shows it beside a text.
        form.name->setPlaceholderText(expected);
        const QByteArray point = learn();
        form.name->setPlaceholderText(actual);
        EXPECT_EQ(resultsOf(point) == QStringList(passed), isEqual) << actual;
    }
}

TEST_F(TitanVPTest, EachElementIsComparedByTheChecksThatThePointHasForIt)
{
    const char equalText[] = "<VerifyProperty name='text' type='equal'/>";
    const char correlation[] =
        "<Algorithm name='%1'><Parameter name='%2'>%3</Parameter></Algorithm>";
    const std::tuple<const char *, QString, bool> rows[] = {
        {"content", equalText, false},
        {"content", "<VerifyProperty name='text' type='wildcard'>!*</VerifyProperty>", true},
        {"content", "<VerifyProperty name='text' type='wildcard'>!</VerifyProperty>", false},
        {"content", "<VerifyProperty name='text' type='regexp'>!\\d</VerifyProperty>", true},
        {"content", "<VerifyProperty name='text' type='regexp'>!*</VerifyProperty>", false},
        {"geometry", "<VerifyProperty name='x' type='equal'/>", false},
        {"geometry", "<VerifyProperty name='x' type='range' delta='5'/>", true},
        {"geometry", "<VerifyProperty name='x' type='range' delta='4'/>", false},
        {"geometry", "<VerifyProperty name='x' type='range' delta='many'/>", false},
        {"screenshot", "", false},
        {"screenshot", "<Mask type='negative' x='0' y='0' width='10' height='10'/>", true},
        {"screenshot", "<Mask type='negative' x='0' y='0' width='1' height='1'/>", false},
        {"screenshot", QString(correlation).arg("correlationcompare", "threshold", "-1"), true},
        {"screenshot", QString(correlation).arg("correlationcompare", "threshold", "1"), false},
        {"screenshot", QString(correlation).arg("correlationcompare", "threshold", "x"), false},
        {"screenshot", QString(correlation).arg("correlationcompare", "other", "-1"), false},
        {"screenshot", QString(correlation).arg("other", "threshold", "-1"), false},
    };
    Form form;
    QByteArray point = learn();
    const int mark = point.lastIndexOf("<element id=\"");
    const QByteArray id = point.mid(mark).split('"').value(1);
    point.truncate(point.indexOf("<check "));
    form.mark->setText("!7");
    form.mark->move(375, 2);
    form.mark->setStyleSheet("background: red");
    const auto isPassedBy = [&](const QString &checks) {
        return resultsOf(point + checks.toUtf8() +
                         "</visual></Verification></VerificationPoint>") == QStringList(passed);
    };
    const QString check("<check type='%1'><PropertyVerification element-id='%2' disabled='%3'>"
                        "%4</PropertyVerification></check>");
    for (const auto &[type, body, isPassed] : rows) {
        SCOPED_TRACE(body.toStdString());
        EXPECT_EQ(isPassedBy(check.arg(type, id, "false", body)), isPassed);
    }
    EXPECT_TRUE(isPassedBy(check.arg("content", id, "true", equalText)));
    // What is below an element of which no child is looked at.
    EXPECT_TRUE(isPassedBy(check.arg("content", id, "false", equalText) +
                           "<check type='subtree'><PropertyVerification element-id='1'/></check>"));
}

TEST_F(TitanVPTest, TheSnapshotOfAFailureIsStoredOnce)
{
    Form form;
    const QByteArray point = learn();
    form.name->setText("else");
    options.setRetryDuration(30);
    const QString dir = path("suite/tst_a/failedSnapshots/");
    for (const QString name : {"vp.xml_1.xml", "vp.xml_2.xml"}) {
        EXPECT_TRUE(resultsOf(point).value(0).endsWith(
            QString(" found.  Object snapshot saved as '%1')").arg(dir + name)));
        EXPECT_TRUE(readFile(dir + name).contains("<string>else</string>"));
    }
    EXPECT_EQ(QDir(dir).entryList(QDir::Files).size(), 2);
}

TEST_F(TitanVPTest, WhereNoSnapshotCanBeStoredTheFailureSaysSo)
{
    Form form;
    const QByteArray point = learn();
    form.name->setText("else");
    const QString dir = path("suite/tst_a/failedSnapshots/");
    const QString file = dir + "vp.xml_1.xml";
    const auto expectReason = [this](const QString &reason) {
        const QString result = takeResults().join('\n');
        EXPECT_TRUE(result.endsWith(" found.  Also failed to " + reason)) << result.toStdString();
    };
    writeFile(path("suite/tst_a/failedSnapshots"), "");
    verifyFile(point);
    expectReason("create directory '" + dir + "' for the snapshot.");
    QFile::remove(path("suite/tst_a/failedSnapshots"));
    QDir().mkpath(dir);
    const FileSizeLimit limit(3000);
    TestVP("vp", path("suite/tst_a/points/vp.xml"))
        .verify(&log, stack, &runner, "info", &resolver, options, nullptr, false);
    expectReason("save object snapshot as '" + file + "': File too large.");
    QString error;
    const SharedPtr<Object> object = inspector.findObject("form", nullptr);
    const QByteArray dump = requestObjectSnapshotForVisualVP(object, nullptr);
    writeFile(path("p.xml"), "old");
    EXPECT_FALSE(createTitanVPFile(dump, QFileInfo(path("p.xml")), "form", &error));
    EXPECT_TRUE(error.endsWith("p.xml': File too large")) << error.toStdString();
    EXPECT_EQ(readFile(path("p.xml")), "old");
}

TEST_F(TitanVPTest, WhatCantBeComparedSaysWhy)
{
    Form form;
    const QByteArray point = learn();
    QByteArray other = point;
    other.replace("object=\"form\"", "object=\"none\"");
    EXPECT_EQ(resultsOf(other),
              QStringList("ERROR vp: Visual comparison of object 'none' failed|Object none not "
                          "found"));
    other = point;
    other.replace("<execution>", "<run/><execution>");
    EXPECT_EQ(resultsOf(other),
              QStringList(QString(failed) + "Failed to read object tree from VP"));
    // Another top element has no text of its own.
    EXPECT_EQ(failureOf("<VerificationPoint version='5' type='Visual'><Verification object='form'/>"
                        "</VerificationPoint>"),
              "");
    const EnvironmentGuard none("MORVEX_PREFIX", path("no/prefix").toLocal8Bit());
    EXPECT_EQ(resultsOf(point),
              QStringList("ERROR vp: Visual comparison of object 'form' failed|Failed to fetch "
                          "object snapshot: No filters found for visual VP"));
    QString error;
    EXPECT_FALSE(createTitanVPFile({}, QFileInfo(path("p.xml")), "form", &error));
    EXPECT_EQ(error, QString("Failed to load selectiondefaults file '%1': Failed to open file")
                         .arg(path("no/prefix/etc/visualselectiondefaults.xml")));
    writeFile(path("file"), "");
    EXPECT_FALSE(createTitanVPFile({}, QFileInfo(path("file/p.xml")), "form", &error));
    EXPECT_EQ(error, QString("Unable to create %1 directory for VP file").arg(path("file")));
    EXPECT_FALSE(createTitanVPFile({}, QFileInfo(path("suite")), "form", nullptr));
}

TEST_F(TitanVPTest, TheChecksOfAFileAreHeeded)
{
    Form form;
    form.count->setObjectName("count");
    const QByteArray point = learn();
    const auto changed = [](QByteArray file, const QByteArray &before, const QByteArray &after) {
        EXPECT_TRUE(file.contains(before)) << before.constData();
        return file.replace(before, after);
    };
    form.count->setText("4");
    EXPECT_EQ(failureOf(point), "Content matching error(s) found. ");
    const QByteArray text = "<VerifyProperty name=\"text\" type=\"equal\"/>";
    EXPECT_EQ(failureOf(changed(point, text,
                                "<VerifyProperty name='text' type='wildcard'>*"
                                "</VerifyProperty>")),
              "Screenshot comparison error(s) found. ");
    const QByteArray screenshot = "<check type=\"screenshot\">";
    EXPECT_EQ(resultsOf(changed(changed(point, text,
                                        "<VerifyProperty name='text' type='regexp'>.*"
                                        "</VerifyProperty>"),
                                screenshot, "<check type=\"other\">")),
              QStringList(passed));
    const QByteArray disabled =
        changed(point, "<PropertyVerification ", "<PropertyVerification disabled='true' ");
    EXPECT_EQ(resultsOf(disabled), QStringList(passed));
    form.button->resize(form.button->width() - 2, form.button->height());
    const int geometry = disabled.indexOf("<check type=\"geometry\">");
    const QByteArray range =
        changed(disabled.left(geometry) + disabled.mid(geometry).replace("disabled='true' ", ""),
                screenshot, "<check type=\"other\">");
    const QByteArray equal = "type=\"equal\"";
    EXPECT_EQ(failureOf(range), "Geometry error(s) found. ");
    EXPECT_EQ(resultsOf(changed(range, equal, "type='range' delta='2'")), QStringList(passed));
    EXPECT_EQ(failureOf(changed(range, equal, "type='range' delta='two'")),
              "Geometry error(s) found. ");
}
