#include "objectmodel/qt/qtinspector.h"

#include "objectmodel/class.h"
#include "objectmodel/methodlist.h"
#include "objectmodel/namespace.h"
#include "objectmodel/property.h"
#include "shared/richimage.h"

#include <QAction>
#include <QCoreApplication>
#include <QDataStream>
#include <QHash>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QRect>
#include <QSpinBox>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Morvex;

class QtInspectorTest : public testing::Test
{
protected:
    QtInspectorTest()
    {
        auto *layout = new QVBoxLayout(&window);
        window.setObjectName("window");
        const std::pair<QWidget *, const char *> parts[] = {
            {&button, "button"}, {&edit, "edit"}, {&table, "table"}};
        for (const auto &part : parts) {
            part.first->setObjectName(part.second);
            layout->addWidget(part.first);
        }
        action.setObjectName("action");
        QObject::connect(&button, &QPushButton::clicked, &window, [this] { ++clicks; });
        QObject::connect(&action, &QAction::triggered, &window, [this] { ++clicks; });
        window.show();
    }

    SharedPtr<Object> find(const char *name) { return inspector.findObject(name, nullptr); }

    /// The error text.
    QString call(const char *function, const char *object, const QVariantList &arguments = {})
    {
        QString error;
        inspector.callFunction(function, QVariantList{find(object)->id()} + arguments, &error);
        return error;
    }

    QWidget window;
    QPushButton button;
    QLineEdit edit;
    QTableWidget table{1, 1};
    QAction action{&window};
    int clicks = 0;
    QtInspector inspector;
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
    EXPECT_EQ(inspector.findNamespace("Nothing")->getClass("Class"), nullptr);
}

TEST_F(QtInspectorTest, ValuesCompareByNumberAndAsTextWithTexts)
{
    const struct
    {
        SharedPtr<Object> a, b;
        bool isEqual;
    } rows[] = {
        {inspector.makeInt(1), inspector.makeDouble(1), true},
        {inspector.makeInt(1), inspector.makeString("1"), true},
        {inspector.makeString("1"), inspector.makeInt(1), false},
        {inspector.makeBool(true), inspector.makeInt(1), false},
        {inspector.makeBool(true), inspector.makeString("true"), true},
        {inspector.makeDouble(0.1), inspector.makeString("0.1"), true},
        {inspector.makeString("a"), inspector.makeString("A"), false},
        {inspector.makeInt(1), SharedPtr<Object>(), false},
        {find("button"), find("button"), true},
        {find("button"), find("edit"), false},
    };
    for (const auto &row : rows)
        EXPECT_EQ(row.a->compare(row.b), row.isEqual) << row.a->valueText().toStdString();
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

TEST_F(QtInspectorTest, ClicksReachTheObjectOrSayWhyNot)
{
    EXPECT_EQ(call("clickObject", "button"), QString());
    EXPECT_EQ(call("clickObject", "button", {2, 2}), QString());
    EXPECT_EQ(call("clickObject", "action"), QString());
    EXPECT_EQ(clicks, 3);
    EXPECT_EQ(call("clickObject", "button", {-1, 2}), "-1,2 lies outside of the widget");
    button.setEnabled(false);
    action.setEnabled(false);
    EXPECT_EQ(call("clickObject", "button"), "the widget is disabled");
    EXPECT_EQ(call("clickObject", "action"), "the action is disabled");
    button.hide();
    EXPECT_EQ(call("clickObject", "button"), "the widget is not visible");
    EXPECT_EQ(call("typeText", "action", {"a"}), "the object is no widget");
    EXPECT_EQ(call("nothing", "button"), "there is no function 'nothing'");
    EXPECT_EQ(clicks, 3);
}

TEST_F(QtInspectorTest, TypingSendsCharactersAndNamedKeys)
{
    EXPECT_EQ(call("typeText", "edit", {"aBc<<<Backspace>"}), QString());
    EXPECT_EQ(edit.text(), "aBc");
    EXPECT_EQ(call("typeText", "edit", {"<Ctrl+A>x<Home>y"}), QString());
    EXPECT_EQ(edit.text(), "yx");
    EXPECT_EQ(call("typeText", "edit", {"z<Nonsense>"}),
              "'<Nonsense>' is no key; \"<\" is typed by \"<<\"");
    EXPECT_EQ(edit.text(), "yx");
}

TEST_F(QtInspectorTest, PicturesHaveTheirPlaceOnTheScreen)
{
    window.move(30, 40);
    const QVariant answer =
        inspector.callFunction("grabObjectScreenshot", {find("window")->id(), 0, 1}, nullptr);
    const Screenshot picture = Screenshot::fromVariant(answer);
    EXPECT_EQ(picture.size(), window.size());
    EXPECT_EQ(picture.imageToNative(QPoint(1, 2)), window.mapToGlobal(QPoint(1, 2)));
    EXPECT_FALSE(
        Screenshot::fromVariant(inspector.callFunction("desktopScreenshot", {}, nullptr)).isNull());
}

TEST_F(QtInspectorTest, WaitingGoesOnWhenTheApplicationHasEndedItsEventLoop)
{
    QCoreApplication::quit();
    QTimer::singleShot(10, &window, [this] { window.resize(321, 234); });
    const QVariant answer =
        inspector.callFunction("grabObjectScreenshot", {find("window")->id(), 0, 100}, nullptr);
    EXPECT_EQ(Screenshot::fromVariant(answer).size(), QSize(321, 234));
    // A loop that ends by itself lets the other tests have theirs again.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

TEST_F(QtInspectorTest, ADumpHoldsTheTreeOfWidgetsInTheFormOfElements)
{
    button.setText("Press");
    const QByteArray dump =
        inspector.callFunction("dumpObject", {find("button")->id(), QByteArray("f")}, nullptr)
            .toByteArray();
    ASSERT_EQ(dump.at(0), char(0xc5));
    QDataStream stream(dump.mid(1));
    stream.setVersion(12);
    int elements, superTypes, events, children;
    QString id, type, concrete, simplified, space, superType, text, realName, symbolicName;
    bool transparent, subgraph, isWindow, relative;
    QRect rect;
    QImage image;
    QHash<QString, QString> properties, identifying;
    stream >> elements >> id >> type >> concrete >> simplified >> space >> superTypes;
    for (int i = 0; i < superTypes; ++i)
        stream >> superType;
    stream >> transparent >> subgraph >> isWindow >> text >> rect >> relative >> image;
    stream >> realName >> symbolicName >> properties >> identifying >> events >> children;
    EXPECT_EQ(stream.status(), QDataStream::Ok);
    EXPECT_TRUE(stream.atEnd());
    EXPECT_EQ(elements, 1);
    EXPECT_EQ(id, QString::number(find("button")->id()));
    EXPECT_EQ(concrete, "QPushButton");
    EXPECT_EQ(superType, "QObject");
    EXPECT_EQ(text, "Press");
    EXPECT_EQ(rect, QRect(button.mapToGlobal(QPoint()), button.size()));
    EXPECT_EQ(image.size(), button.size());
    EXPECT_EQ(realName, "{name='button' type='QPushButton'}");
    EXPECT_EQ(properties["enabled"], "true");
    EXPECT_EQ(identifying["text"], "Press");
    EXPECT_EQ(children, 0);

    const QByteArray refused =
        inspector.callFunction("dumpObject", {find("action")->id()}, nullptr).toByteArray();
    EXPECT_EQ(refused.mid(1), "The object is no widget");
    EXPECT_NE(refused.at(0), char(0xc5));
}
