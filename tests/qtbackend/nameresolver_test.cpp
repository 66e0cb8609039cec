#include "objectmodel/objectmap.h"
#include "support/backend.h"

#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>

using namespace Morvex;

class NameResolverTest : public testing::Test
{
protected:
    NameResolverTest()
    {
        window.setObjectName("main");
        window.setWindowTitle("Main window");
        auto *layout = new QVBoxLayout(&window);
        for (const char *text : {"&Save", "Save as", "Load"}) {
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
    MorvexTest::Backend backend;
    Inspector &inspector = backend.inspector();
};

TEST_F(NameResolverTest, NamesFindTheirObjects)
{
    const char *const rows[][2] = {
        {"load", "{name='load' type='QPushButton'}"},
        {"{name='quit'}", "{name='quit' type='QAction'}"},
        {"{text='&Save'}", "{text='&Save' type='QPushButton'}"},
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
        {" :Label\n", "{name='label' type='QLabel'}"},
        {" load ", "{name='load' type='QPushButton'}"},
        {"{text='&Save' parent=' main '}", "{text='&Save' type='QPushButton'}"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(find(row[0]), row[1]) << row[0];
}

TEST_F(NameResolverTest, AButtonHasTheNameThatItsUserReads)
{
    buttons[0]->setObjectName("__qt__passive_wizardbutton1");
    EXPECT_EQ(find("{text='&Save'}"), "{text='&Save' type='QPushButton'}");
}

TEST_F(NameResolverTest, ATextIsFoundWhateverItsMnemonicUnlessOneFitsAsItIs)
{
    EXPECT_EQ(find("{text='Save'}"), "{text='&Save' type='QPushButton'}");
    EXPECT_EQ(find("{text='Sa&ve as'}"), "{text='Save as' type='QPushButton'}");
    buttons[2]->setText("Save");
    EXPECT_EQ(find("{text='Save'}"), "{name='load' type='QPushButton'}");
    EXPECT_EQ(find("{text='&Save'}"), "{text='&Save' type='QPushButton'}");
}

TEST_F(NameResolverTest, AMissingObjectIsReportedWithTheClosestOnes)
{
    const char *const rows[][2] = {
        {"{name='load' text='Store'}", "{name='load' type='QPushButton'} with text 'Load'."},
        {"{colour='red' name='load' parent='dialog'}",
         "{name='load' type='QPushButton'} with no colour, another parent."},
        {"{name='lod'}", "{name='load' type='QPushButton'} with name 'load'."},
        {"{container='dialog' text='innre'}", "{name='label' type='QLabel'} with text 'inner'."},
        {"{name='save as'}", "{text='&Save' type='QPushButton'} with name ''; {text='Save as' "
                             "type='QPushButton'} with name ''."},
        {"{type='QPushButon' window='dialog'}",
         "{text='&Save' type='QPushButton'} with type 'QPushButton', another window; "
         "{text='Save as' type='QPushButton'} with type 'QPushButton', another window; "
         "{name='load' type='QPushButton'} with type 'QPushButton', another window."},
    };
    for (const auto &row : rows)
        EXPECT_EQ(find(row[0]), QString("There is no object %1. Closest: %2").arg(row[0], row[1]));
}

TEST_F(NameResolverTest, ANameThatIsAmbiguousOrUnusableSaysWhy)
{
    const char *const rows[][2] = {
        {"nothing", "There is no object {name='nothing'}."},
        {"{name='label'}",
         "{name='label'} fits 2 objects: {name='label' type='QLabel'} (occurrence 1 in "
         "{name='dialog' type='QWidget'}, hidden), {name='label' type='QLabel'} (occurrence 2 in "
         "{name='box' type='QWidget'}, hidden)."},
        {"{name='x' parent={type='QPushButton'}}",
         "The parent of {name='x' parent={type='QPushButton'}} is not clear. {type='QPushButton'} "
         "fits 3 objects: {text='&Save' type='QPushButton'}, {text='Save as' type='QPushButton'}, "
         "{name='load' type='QPushButton'}."},
        {"{type='QPushButton' occurrence='4'}",
         "There are 3 objects like {occurrence='4' type='QPushButton'}, none of which is number "
         "4."},
        {"{name='load' window={name='none'}}",
         "The window of {name='load' window={name='none'}} is not there. There is no object "
         "{name='none'}."},
        {"{name~='('}", "'(' is not a valid regular expression: missing closing parenthesis."},
        {":Loop", "The parent of {parent=':Loop'} is not there. ':Loop' refers to itself."},
        {":Nobody", "The object map has no name ':Nobody'."},
        {"{name",
         "{name is not a valid object name: \"=\", \"?=\" or \"~=\" is missing, at character "
         "6."},
    };
    for (const auto &row : rows)
        EXPECT_EQ(find(row[0]), row[1]);
    ObjectMap::install(nullptr);
    EXPECT_EQ(find(":Main"), "There is no object map for ':Main'.");
}

TEST_F(NameResolverTest, WhatUsersTypeIsInNoMessage)
{
    auto *password = new QLineEdit("secret", buttons[0]);
    password->setEchoMode(QLineEdit::Password);
    new QLineEdit("typed", buttons[0]);
    new QSpinBox(buttons[0]);
    const QString bullets(6, password->displayText().at(0));
    EXPECT_EQ(find("{type='QLineEdit' text='secret'}"), "{type='QLineEdit'}");
    EXPECT_EQ(find("{type='QSpinBox'}"), "{type='QSpinBox'}");
    EXPECT_EQ(
        find("{type='QLineEdit' echoMode='Password' text='x'}"),
        QString("There is no object {echoMode='Password' text='x' type='QLineEdit'}. Closest: "
                "{type='QLineEdit'} with text '%1'.")
            .arg(bullets));
    // Nor where another widget holds the one that hides it.
    QComboBox box(&window);
    box.setObjectName("box 2");
    box.setEditable(true);
    box.lineEdit()->setEchoMode(QLineEdit::Password);
    box.setCurrentText("secret");
    window.setProperty("editor", QVariant::fromValue<QObject *>(password));
    for (const char *name : {"{name='box 2' currentText='x'}", "{name='main' editor.text='x'}"}) {
        const QString error = find(name);
        EXPECT_TRUE(error.contains(bullets)) << error.toStdString();
        EXPECT_FALSE(error.contains("secret")) << error.toStdString();
    }
}

TEST_F(NameResolverTest, NamesThatReferToEachOtherTakeABoundedTime)
{
    const auto symbol = [](const char *kind, int i) { return QString(":%1%2").arg(kind).arg(i); };
    map.insert(symbol("twice", 0), ObjectName("{name='main'}"));
    for (int i = 1; i < 60; ++i)
        map.insert(symbol("twice", i),
                   ObjectName(QString("{name='main' window='%1' self={window='%1' name='main'}}")
                                  .arg(symbol("twice", i - 1))));
    for (int i = 0; i < 50000; ++i)
        map.insert(symbol("long", i),
                   ObjectName(QString("{window='%1'}").arg(symbol("long", i + 1))));
    window.setProperty("self", QVariant::fromValue<QObject *>(&window));
    EXPECT_EQ(find(":twice59"), "{name='main' type='QWidget'}");
    EXPECT_TRUE(find(":long0").endsWith("Names refer to others more than 200 levels deep."));
}

TEST_F(NameResolverTest, OccurrencesCountInAnOrderThatNoRunChanges)
{
    std::vector<std::unique_ptr<QWidget>> windows(8);
    for (auto &made : windows)
        made = std::make_unique<QWidget>();
    const int order[] = {3, 1, 4, 0, 5, 2, 7, 6};
    for (int i : order) {
        QWidget *shown = windows[std::size_t(i)].get();
        shown->show();
        new QGroupBox(QString::number(i), shown);
        new QMenu(QString::number(i), &window);
    }
    int occurrence = 0;
    for (int i : order) {
        ++occurrence;
        for (const QString type : {"QGroupBox", "QMenu"})
            EXPECT_EQ(find(QString("{type='%1' occurrence='%2'}").arg(type).arg(occurrence)),
                      QString("{title='%1' type='%2'}").arg(i).arg(type));
    }
}

TEST_F(NameResolverTest, OccurrencesCountAsObjectsWereMadeWhateverIsRaisedOrMoved)
{
    const auto texts = [this](const char *type) {
        QStringList found;
        for (int occurrence = 1; occurrence <= 3; ++occurrence)
            found +=
                inspector
                    .findObject(QString("{type='%1' occurrence='%2'}").arg(type).arg(occurrence),
                                nullptr)
                    ->valueText()
                    .section('\'', 1, 1);
        return found;
    };
    // There before the inspector was.
    buttons[0]->raise();
    EXPECT_EQ(texts("QPushButton"), (QStringList{"&Save", "Save as", "load"}));
    auto *first = new QGroupBox("1");
    auto *second = new QGroupBox("2", &window);
    auto *replaced = new QGroupBox("3", &window);
    first->setParent(&window);
    second->raise();
    delete replaced;
    new QGroupBox("4", &window);
    second->lower();
    EXPECT_EQ(texts("QGroupBox"), (QStringList{"1", "2", "4"}));
}

TEST_F(NameResolverTest, WaitingLetsTheApplicationMakeTheObject)
{
    QTimer::singleShot(50, &window, [this] { (new QLabel(&window))->setObjectName("late"); });
    QString error;
    EXPECT_FALSE(inspector.waitForObject("late", 0, &error));
    EXPECT_EQ(error, "There is no object {name='late'}.");
    EXPECT_TRUE(inspector.waitForObject("late", 60000, &error));
}

TEST_F(NameResolverTest, AnObjectThatIsDeletedLaterIsNotFoundAtTheNextLookup)
{
    const SharedPtr<Object> load = inspector.findObject("load", nullptr);
    ASSERT_TRUE(load && load->objectClass());
    buttons[2]->deleteLater();
    EXPECT_FALSE(inspector.findObject("load", nullptr));
    EXPECT_FALSE(load->objectClass());
    EXPECT_EQ(load->valueText(), "(an object that no longer exists)");
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
