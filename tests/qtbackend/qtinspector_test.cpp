#include "qtbackend/inspectortest.h"

#include "objectmodel/class.h"
#include "objectmodel/methodlist.h"
#include "objectmodel/namespace.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/property.h"
#include "shared/richimage.h"

#include <QTableWidget>
#include <QTimer>
#include <QTreeView>

#include <climits>
#include <limits>
#include <memory>
#include <vector>

using namespace Morvex;

namespace Warehouse {

class Shelf : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
};

} // namespace Warehouse

class QtInspectorTest : public MorvexTest::InspectorTest
{
protected:
    QtInspectorTest()
    {
        add(&button, "button");
        add(&edit, "edit");
        add(&table, "table");
        action.setObjectName("action");
        QObject::connect(&button, &QPushButton::clicked, &window, [this] { ++clicks; });
        QObject::connect(&action, &QAction::triggered, &window, [this] { ++clicks; });
        window.show();
    }

    QPushButton button;
    QLineEdit edit;
    QTableWidget table{1, 1};
    QAction action{&window};
    int clicks = 0;
};

TEST_F(QtInspectorTest, PropertiesAreReadAndWrittenThroughTheirClass)
{
    const SharedPtr<Object> object = find("edit");
    const Class *editClass = object->objectClass();
    EXPECT_EQ(editClass->name(), "QLineEdit");
    EXPECT_EQ(editClass, inspector.findClass("QLineEdit"));
    EXPECT_TRUE(editClass->isSubclassOf(inspector.findClass("QWidget")));
    EXPECT_FALSE(editClass->isSubclassOf(inspector.findClass("QPushButton")));
    EXPECT_FALSE(editClass->isSubclassOf(nullptr));
    EXPECT_TRUE(editClass->propertyNames().contains("objectName"));
    EXPECT_EQ(editClass->property("text")->set(object, "new"), QString());
    EXPECT_EQ(edit.text(), "new");
    EXPECT_EQ(editClass->property("text")->get(object)->value(), QVariant("new"));
    EXPECT_EQ(editClass->property("window")->get(object)->id(), find("window")->id());
    EXPECT_EQ(editClass->property("frameSize")->set(object, 1),
              "property 'frameSize' can't be written");
    EXPECT_EQ(editClass->property("nothing"), nullptr);
    EXPECT_EQ(inspector.findClass("Nothing"), nullptr);
}

TEST_F(QtInspectorTest, NamespacesAreThoseOfTheClasses)
{
    EXPECT_EQ(inspector.findNamespace("Warehouse"), nullptr);
    const Warehouse::Shelf shelf;
    const Namespace *found = inspector.findNamespace("Warehouse");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->getClass("Shelf"), inspector.findClass("Warehouse::Shelf"));
    EXPECT_EQ(found->getClass("Nothing"), nullptr);
    EXPECT_EQ(inspector.findNamespace("QLineEdit"), nullptr);
}

TEST_F(QtInspectorTest, PropertiesThatTheApplicationAddsBelongToTheirObject)
{
    button.setProperty("kind", "special");
    button.setProperty("_q_own", 1);
    const SharedPtr<Object> object = inspector.findObject("{kind='special'}", nullptr);
    ASSERT_TRUE(object);
    const Class *objectClass = object->objectClass();
    EXPECT_EQ(objectClass->name(), "QPushButton");
    EXPECT_TRUE(objectClass->isSubclassOf(inspector.findClass("QPushButton")));
    EXPECT_EQ(objectClass, object->objectClass());
    EXPECT_TRUE(objectClass->propertyNames().contains("kind"));
    EXPECT_EQ(objectClass->property("_q_own"), nullptr);
    EXPECT_EQ(objectClass->property("kind")->set(object, 2), QString());
    EXPECT_EQ(button.property("kind"), QVariant(2));
    EXPECT_EQ(find("edit")->objectClass()->property("kind"), nullptr);
}

TEST_F(QtInspectorTest, ValuesCompareByNumberAndAsTextWithTexts)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::tuple<QVariant, QVariant, bool, const char *> rows[] = {
        {1, 1.0, true, "1"},
        {1, "1", true, "1"},
        {"1", 1, false, "1"},
        {true, 1, false, "true"},
        {true, "true", true, "true"},
        {"a", "A", false, "a"},
        {nan, 1.0, false, "nan"},
        {1.0, nan, false, "1"},
        {nan, 7, false, "nan"},
        {nan, nan, true, "nan"},
        {quint64(-1), -1, false, "18446744073709551615"},
        {-1, quint64(-1), false, "-1"},
        {quint64(-1), quint64(-1), true, "18446744073709551615"},
        {5u, 5, true, "5"},
        {QVariant::fromValue(uchar(200)), 200, true, "200"},
        {QVariant::fromValue(char(65)), 65, true, "65"},
        {QVariant::fromValue<signed char>(-3), -3, true, "-3"},
        {QVariant::fromValue(short(-3)), -3.0, true, "-3"},
        {0.1f, 0.1, true, "0.1"},
        {0.1f, 0.1f, true, "0.1"},
        {0.1f, 0.2, false, "0.1"},
        {16777216.0f, 16777216, true, "16777216"},
    };
    const SharedPtr<Object> object = find("button");
    const auto valueOf = [&](const char *name, const QVariant &value) {
        button.setProperty(name, value);
        return object->objectClass()->property(name)->get(object);
    };
    for (const auto &[one, other, isEqual, text] : rows) {
        const SharedPtr<Object> value = valueOf("value", one);
        EXPECT_EQ(value->compare(valueOf("other", other)), isEqual) << text;
        EXPECT_EQ(value->valueText(), text);
        EXPECT_TRUE(value->compare(inspector.makeString(text))) << text;
        EXPECT_FALSE(value->compare(SharedPtr<Object>())) << text;
    }
    EXPECT_TRUE(object->compare(find("button")));
    EXPECT_FALSE(object->compare(find("edit")));
}

TEST_F(QtInspectorTest, ValuesWithoutATextEqualNoText)
{
    const SharedPtr<Object> object = find("button");
    for (const char *name : {"sizePolicy", "palette", "cursor", "icon", "locale"}) {
        const SharedPtr<Object> value = object->objectClass()->property(name)->get(object);
        ASSERT_TRUE(value) << name;
        // Of another process there is no value of such a type.
        if (!MorvexTest::Backend::isRemote()) {
            EXPECT_EQ(value->valueText(), QString("(%1)").arg(value->value().typeName()));
        }
        EXPECT_TRUE(value->compare(value)) << name;
        for (const SharedPtr<Object> &text :
             {inspector.makeString(""), inspector.makeString(value->valueText().toUtf8())}) {
            EXPECT_FALSE(value->compare(text)) << name;
            EXPECT_FALSE(text->compare(value)) << name;
        }
    }
}

TEST_F(QtInspectorTest, EnumeratorsAreTheirNamesWhereThoseSayItAll)
{
    const auto set = [this](int policy, int hints) {
        button.setContextMenuPolicy(Qt::ContextMenuPolicy(policy));
        button.setInputMethodHints(Qt::InputMethodHints(hints));
    };
    const auto text = [this](const char *name) {
        const SharedPtr<Object> object = find("button");
        return object->objectClass()->property(name)->get(object)->valueText();
    };
    set(Qt::ActionsContextMenu, Qt::ImhHiddenText | Qt::ImhSensitiveData);
    EXPECT_EQ(text("contextMenuPolicy"), "ActionsContextMenu");
    EXPECT_EQ(text("inputMethodHints"), "ImhHiddenText|ImhSensitiveData");
    set(7, Qt::ImhHiddenText | 0x8000000);
    EXPECT_EQ(text("contextMenuPolicy"), "7");
    EXPECT_EQ(text("inputMethodHints"), QString::number(Qt::ImhHiddenText | 0x8000000));
}

TEST_F(QtInspectorTest, MethodsTakeTheirArgumentsAndNoOthers)
{
    EXPECT_FALSE(inspector.cast(find("button"), "Table"));
    EXPECT_TRUE(inspector.cast(find("button"), "QAbstractButton"));
    const SharedPtr<Object> asTable = inspector.cast(find("table"), "Table");
    ASSERT_TRUE(asTable);
    const MethodList *getRange = asTable->objectClass()->methods("getRange");
    const auto number = [this](int value) { return inspector.makeInt(value); };
    SharedPtr<Object> range;
    EXPECT_FALSE(getRange->invoke(asTable, {number(0)}, &range));
    EXPECT_FALSE(
        getRange->invoke(find("button"), {number(0), number(0), number(0), number(0)}, &range));
    EXPECT_FALSE(getRange->invoke(
        asTable, {number(0), number(0), number(0), inspector.makeString("x")}, &range));
    ASSERT_TRUE(getRange->invoke(asTable, {number(0), number(1), number(0), number(1)}, &range));
    SharedPtr<Object> xml;
    EXPECT_TRUE(range->objectClass()->methods("contentAsXml")->invoke(range, {number(1)}, &xml));
    EXPECT_TRUE(xml->valueText().contains("<cell>"));
    EXPECT_EQ(inspector.globalClass()->methods("nothing"), nullptr);
}

TEST_F(QtInspectorTest, ATableIsWhatItsViewShows)
{
    QTableView view;
    QTreeView tree;
    QListView list;
    QStandardItemModel model(4, 3);
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 3; ++column)
            model.setItem(row, column, new QStandardItem(QString("%1%2").arg(row).arg(column)));
        model.item(row)->appendRow(new QStandardItem("below"));
    }
    for (QAbstractItemView *each : std::initializer_list<QAbstractItemView *>{&view, &tree, &list})
        each->setModel(&model);
    view.setObjectName("view");
    tree.setObjectName("tree");
    list.setObjectName("list");
    view.setRowHidden(1, true);
    view.setColumnHidden(0, true);
    tree.setRowHidden(0, {}, true);
    tree.setColumnHidden(2, true);
    list.setRowHidden(3, true);
    list.setModelColumn(1);
    const struct
    {
        const char *name;
        std::vector<int> edges;
        const char *cells;
    } rows[] = {
        {"view", {-1, -1, -1, -1}, "01 02 21 22 31 32"},
        {"tree", {-1, -1, -1, -1}, "10 11 20 21 30 31"},
        {"list", {-1, -1, -1, -1}, "01 11 21"},
        {"view", {1, INT_MAX, 0, 1}, "21 31"},
        {"view", {0, 1, 1, 900000}, "02"},
        {"view", {900000, INT_MAX, 0, 1}, ""},
        {"view", {2, 1, 0, INT_MAX}, ""},
    };
    for (const auto &row : rows) {
        const SharedPtr<Object> asTable = inspector.cast(find(row.name), "Table");
        ObjectList edges;
        for (int edge : row.edges)
            edges.push_back(inspector.makeInt(edge));
        SharedPtr<Object> range, xml;
        ASSERT_TRUE(asTable->objectClass()->methods("getRange")->invoke(asTable, edges, &range));
        ASSERT_TRUE(range->objectClass()->methods("contentAsXml")->invoke(range, {}, &xml));
        QStringList texts;
        QRegularExpressionMatchIterator cells =
            QRegularExpression("<text>([^<]*)</text>").globalMatch(xml->valueText());
        while (cells.hasNext())
            texts += cells.next().captured(1);
        EXPECT_EQ(texts.join(' '), row.cells) << row.name;
    }
}

TEST_F(QtInspectorTest, ClicksReachTheObjectOrSayWhyNot)
{
    EXPECT_EQ(click("button"), QString());
    EXPECT_EQ(click("button", {2, 2}), QString());
    EXPECT_EQ(click("action"), QString());
    EXPECT_EQ(clicks, 3);
    EXPECT_EQ(click("button", {-1, 2}), "-1,2 is outside the widget");
    button.setEnabled(false);
    action.setEnabled(false);
    EXPECT_EQ(click("button"), "the widget is disabled");
    EXPECT_EQ(click("action"), "the action is disabled");
    button.hide();
    EXPECT_EQ(click("button"), "the widget is not visible");
    EXPECT_EQ(type("action", "a"), "the object is not a widget");
    EXPECT_EQ(call("nothing", "button"), "there is no function 'nothing'");
    QString error;
    inspector.callFunction("clickObject", {0}, &error);
    EXPECT_EQ(error, "there is no object with this id");
    EXPECT_EQ(clicks, 3);
}

TEST_F(QtInspectorTest, PicturesHaveTheirPlaceOnTheScreen)
{
    window.move(30, 40);
    const QVariant reply =
        inspector.callFunction("grabObjectScreenshot", {find("window")->id(), 0, 1}, nullptr);
    const Screenshot picture = Screenshot::fromVariant(reply);
    EXPECT_EQ(picture.size(), window.size());
    EXPECT_EQ(picture.imageToNative(QPoint(1, 2)), window.mapToGlobal(QPoint(1, 2)));
    auto *box = add<QPushButton>("hovered", {0, 0, 100, 30});
    box->setStyleSheet("QPushButton:hover { background: red }");
    QImage pictures[2];
    for (const bool isHovered : {false, true}) {
        box->setAttribute(Qt::WA_UnderMouse, isHovered);
        pictures[isHovered] = Screenshot::fromVariant(
            inspector.callFunction("grabObjectScreenshot", {find("hovered")->id(), 0, 1}, nullptr));
        EXPECT_EQ(box->underMouse(), isHovered);
    }
    EXPECT_FALSE(pictures[0].isNull());
    EXPECT_EQ(pictures[0], pictures[1]);
    EXPECT_FALSE(
        Screenshot::fromVariant(inspector.callFunction("desktopScreenshot", {}, nullptr)).isNull());
}

TEST_F(QtInspectorTest, ThePictureOfTheDesktopShowsWhichWindowIsOnTop)
{
    std::vector<std::unique_ptr<QWidget>> windows(8);
    const auto show = [](QWidget *widget, Qt::GlobalColor colour) {
        widget->setPalette(QPalette(QPalette::Window, QColor(colour)));
        widget->setGeometry(100, 100, 50, 50);
        widget->show();
    };
    const auto colour = [this] {
        const QVariant reply = inspector.callFunction("desktopScreenshot", {}, nullptr);
        return Screenshot::fromVariant(reply).pixelColor(120, 120);
    };
    for (auto &made : windows)
        made = std::make_unique<QWidget>();
    for (const auto &shown : windows)
        show(shown.get(), shown == windows.back() ? Qt::red : Qt::blue);
    EXPECT_EQ(colour(), QColor(Qt::red));
    QWidget dialog(windows.back().get(), Qt::Dialog);
    show(&dialog, Qt::green);
    EXPECT_EQ(colour(), QColor(Qt::green));
    QWidget popup(windows.front().get(), Qt::Popup);
    show(&popup, Qt::yellow);
    EXPECT_EQ(colour(), QColor(Qt::yellow));
}

TEST_F(QtInspectorTest, WaitingGoesOnWhenTheApplicationHasEndedItsEventLoop)
{
    QCoreApplication::quit();
    QTimer::singleShot(10, &window, [this] { window.resize(321, 234); });
    const QVariant reply =
        inspector.callFunction("grabObjectScreenshot", {find("window")->id(), 0, 100}, nullptr);
    EXPECT_EQ(Screenshot::fromVariant(reply).size(), QSize(321, 234));
    // A loop that ends by itself lets the other tests have theirs again.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

#include "qtinspector_test.moc"
