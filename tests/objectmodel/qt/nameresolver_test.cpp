#include "objectmodel/objectmap.h"
#include "objectmodel/qt/qtinspector.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Morvex;

class NameResolverTest : public testing::Test
{
protected:
    NameResolverTest()
    {
        window.setObjectName("main");
        window.setWindowTitle("Main window");
        auto *layout = new QVBoxLayout(&window);
        for (const char *text : {"Save", "Save as", "Load"}) {
            auto *button = new QPushButton(QString(text));
            layout->addWidget(button);
            buttons.push_back(button);
        }
        buttons[2]->setObjectName("load");
        buttons[2]->hide();
        auto *action = new QAction("Quit", &window);
        action->setObjectName("quit");
        auto *box = new QWidget;
        box->setObjectName("box");
        layout->addWidget(box);
        auto *label = new QLabel("inner", box);
        label->setObjectName("label");
        dialog.setObjectName("dialog");
        auto *other = new QLabel("inner", &dialog);
        other->setObjectName("label");
        map.insert(":Main", ObjectName("{name='main'}"));
        map.insert(":Label", ObjectName("{name='label' window=':Main'}"));
        map.insert(":Loop", ObjectName("{parent=':Loop'}"));
        ObjectMap::install(&map);
    }

    /// The text of the object, or why there is none.
    QString find(const QString &name)
    {
        QString error;
        const SharedPtr<Object> object = inspector.findObject(name, &error);
        return object ? object->valueText() : error;
    }

    QWidget window;
    QWidget dialog{&window, Qt::Dialog};
    std::vector<QPushButton *> buttons;
    ObjectMap map;
    QtInspector inspector;
};

TEST_F(NameResolverTest, NamesFindTheirObjects)
{
    const char *const rows[][2] = {
        {"load", "{name='load' type='QPushButton'}"},
        {"{name='quit'}", "{name='quit' type='QAction'}"},
        {"{text='Save'}", "{text='Save' type='QPushButton'}"},
        {"{text?='Save ?s'}", "{text='Save as' type='QPushButton'}"},
        {"{text~='S.*s'}", "{text='Save as' type='QPushButton'}"},
        {"{type='QAbstractButton' text?='L*'}", "{name='load' type='QPushButton'}"},
        {"{type?='QPush*' objectName='load'}", "{name='load' type='QPushButton'}"},
        {"{type='QPushButton' occurrence='2'}", "{text='Save as' type='QPushButton'}"},
        {"{type='QLabel' container={name='box'}}", "{name='label' type='QLabel'}"},
        {"{type='QLabel' parent='dialog'}", "{name='label' type='QLabel'}"},
        {"{type='QPushButton' geometry.x='0' text='Load'}", "{name='load' type='QPushButton'}"},
        {":Main", "{name='main' type='QWidget'}"},
        {":Label", "{name='label' type='QLabel'}"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(find(row[0]), row[1]) << row[0];
}

TEST_F(NameResolverTest, AMissingOrAmbiguousObjectIsToldWithWhatThereIsInstead)
{
    const char *const rows[][2] = {
        {"{name='nothing'}", "There is no object {name='nothing'}."},
        {"{name='load' text='Store'}",
         "There is no object {name='load' text='Store'}. Closest: {name='load' "
         "type='QPushButton'} with text 'Load'."},
        {"{name='load' colour='red' parent='dialog'}",
         "There is no object {colour='red' name='load' parent='dialog'}. Closest: {name='label' "
         "type='QLabel'} with no colour, name 'label'; {name='load' type='QPushButton'} with no "
         "colour, another parent."},
        {"{type='QPushButton'}",
         "{type='QPushButton'} fits 3 objects: {text='Save' type='QPushButton'}, {text='Save as' "
         "type='QPushButton'}, {name='load' type='QPushButton'}."},
        {"{type='QPushButton' occurrence='4'}",
         "There are 3 objects like {occurrence='4' type='QPushButton'}, none of which is number "
         "4."},
        {"{name='load' window={name='none'}}",
         "The window of {name='load' window={name='none'}} is not there. There is no object "
         "{name='none'}."},
        {"{name~='('}", "'(' is no regular expression: missing closing parenthesis."},
        {":Loop", "The parent of {parent=':Loop'} is not there. ':Loop' refers to itself."},
        {":Nobody", "The object map has no name ':Nobody'."},
        {"{name", "{name is no name of an object: \"=\", \"?=\" or \"~=\" is missing, at character "
                  "6."},
    };
    for (const auto &row : rows)
        EXPECT_EQ(find(row[0]), row[1]);
    ObjectMap::install(nullptr);
    EXPECT_EQ(find(":Main"), "There is no object map for ':Main'.");
}

TEST_F(NameResolverTest, WaitingLetsTheApplicationMakeTheObject)
{
    QTimer::singleShot(50, &window, [this] { (new QLabel(&window))->setObjectName("late"); });
    QString error;
    EXPECT_FALSE(inspector.waitForObject("late", 0, &error));
    EXPECT_EQ(error, "There is no object {name='late'}.");
    EXPECT_TRUE(inspector.waitForObject("late", 60000, &error));
}

TEST_F(NameResolverTest, AnObjectThatIsDeletedLaterIsGoneAtTheNextLookup)
{
    const SharedPtr<Object> load = inspector.findObject("load", nullptr);
    ASSERT_TRUE(load && load->objectClass());
    buttons[2]->deleteLater();
    EXPECT_FALSE(inspector.findObject("load", nullptr));
    EXPECT_FALSE(load->objectClass());
    EXPECT_EQ(load->valueText(), "(an object that is gone)");
    EXPECT_FALSE(load->compare(SharedPtr<Object>()));
}

TEST_F(NameResolverTest, AnObjectThatLosesItsConnectionsIsNotTakenForTheNextOneAtItsAddress)
{
    void *memory = ::operator new(sizeof(QObject));
    auto *first = new (memory) QObject(&window);
    first->setObjectName("guest");
    const SharedPtr<Object> known = inspector.findObject("guest", nullptr);
    ASSERT_TRUE(known);
    first->disconnect();
    first->~QObject();
    EXPECT_FALSE(known->objectClass());
    auto *second = new (memory) QObject(&window);
    second->setObjectName("guest");
    const SharedPtr<Object> next = inspector.findObject("guest", nullptr);
    ASSERT_TRUE(next);
    EXPECT_NE(next->id(), known->id());
    second->~QObject();
    ::operator delete(memory);
}
