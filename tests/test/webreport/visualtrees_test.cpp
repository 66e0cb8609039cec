#include "test/webreport/visualtrees.h"

#include "test/visualpointtest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Morvex;
using namespace MorvexTest;

class VisualTreesTest : public VisualPointTest
{
protected:
    QJsonObject treesOf(const QString &snapshot)
    {
        EXPECT_TRUE(writeVisualTrees(path("suite/tst_a/points/vp.xml"), "form", snapshot));
        const QByteArray call = readFile(snapshot + ".js");
        const QByteArray name = "morvexVisualTrees(";
        EXPECT_TRUE(call.startsWith(name) && call.endsWith(");\n"));
        return QJsonDocument::fromJson(call.mid(name.size(), call.size() - name.size() - 3))
            .object();
    }
};

namespace {

QString sizeOfPicture(const QJsonValue &index, const QJsonArray &pictures)
{
    const QByteArray png = pictures.at(index.toInt(-1)).toString().toLatin1();
    const QImage image = QImage::fromData(QByteArray::fromBase64(png));
    return QString("%1 x %2").arg(image.width()).arg(image.height());
}

QStringList differencesIn(const QJsonValue &elements, const QJsonArray &pictures)
{
    QStringList found;
    for (const QJsonValue element : elements.toArray()) {
        for (const QJsonValue difference : element["differences"].toArray()) {
            const auto value = [&](const char *name) {
                return difference[name].isNull() ? "-" : difference[name].toString();
            };
            found += QStringList{value("kind"), value("name"), value("pattern"), value("expected"),
                                 value("actual")}
                         .join('|');
            if (difference["kind"] == "picture") {
                EXPECT_EQ(sizeOfPicture(difference["expectedPicture"], pictures),
                          value("expected"));
                EXPECT_EQ(sizeOfPicture(difference["actualPicture"], pictures), value("actual"));
            }
        }
        found += differencesIn(element["children"], pictures);
    }
    return found;
}

} // namespace

TEST_F(VisualTreesTest, TheReportGetsBothTreesWithWhatWasExpectedAndWhatWasThere)
{
    Form form;
    QByteArray point = learn();
    const QByteArray check = "name=\"text\" type=\"equal\"/>";
    point.replace(point.indexOf(check), check.size(),
                  "name=\"text\" type=\"wildcard\">x *</VerifyProperty>");
    const QString size = QString("%1 x %2").arg(form.count->width()).arg(form.count->height());
    form.mark->move(370, 2);
    form.count->setStyleSheet("background: red");
    delete form.table;
    verifyFile(point);
    point.replace("<Verification ", "<Verification object=\"other\"/><Verification ");
    writeFile(path("suite/tst_a/points/vp.xml"), point);
    const QString snapshot = path("suite/tst_a/failedSnapshots/vp.xml_1.xml");
    const QJsonObject trees = treesOf(snapshot);
    const QJsonArray pictures = trees["pictures"].toArray();
    const QStringList both{"content|text|wildcard|x *|a  b", "geometry|x||380|370",
                           QString("picture|||%1|%1").arg(size),
                           "picture|an element in it has another geometry||400 x 300|400 x 300",
                           "structure|children||1: QTableWidget|1: QTreeWidget"};
    const auto expectDifferences = [&](const char *tree, const QString &unmatched) {
        const QStringList found = differencesIn(trees[tree], pictures);
        for (const QString &line : both + QStringList{unmatched})
            EXPECT_TRUE(found.contains(line)) << tree << ": " << line.toStdString() << '\n'
                                              << found.join('\n').toStdString();
    };
    expectDifferences("expected", "structure|missing||[table] QTableWidget|-");
    expectDifferences("actual", "structure|additional||-|[tree] QTreeWidget");
    writeFile(snapshot, "<ui>");
    EXPECT_TRUE(treesOf(snapshot)["error"].toString().startsWith("The snapshot '"));
}
