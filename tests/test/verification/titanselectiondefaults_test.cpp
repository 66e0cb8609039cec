#include "test/verification/titanselectiondefaults.h"

#include "shared/uiabstraction/uielement.h"
#include "support/test.h"
#include "support/verification.h"
#include "test/verification/titanpropertychecks.h"

#include <QLabel>

using namespace Morvex;
using namespace MorvexTest;

using TitanSelectionDefaultsTest = VerificationTest;

TEST_F(TitanSelectionDefaultsTest, SelectionDefaultsSayWhatIsWrong)
{
    const QLabel known;
    const QString file = path("etc/visualselectiondefaults.xml");
    const EnvironmentGuard other("MORVEX_PREFIX", path("").toLocal8Bit());
    const QString structure = "Invalid structure of selectiondefaults file '%1': ";
    const std::pair<const char *, QString> rows[] = {
        {"<a/>", "Invalid root element 'a' in selectiondefaults file '%1'"},
        {"<selectiondefaults><a/></selectiondefaults>", structure + "unexpected element 'a'"},
        {"<selectiondefaults><check/></selectiondefaults>",
         structure + "unexpected type '' for check"},
        {"<selectiondefaults><check type='content'><widgetType/></check></selectiondefaults>",
         structure + "widgetType element has no name attribute"},
        {"<selectiondefaults><check type='content'><widgetType name='QLabel'><property/>"
         "</widgetType></check></selectiondefaults>",
         structure + "property element has no name attribute"},
        {"<selectiondefaults><check type='content'><widgetType name='QLabel'><a/>"
         "</widgetType></check></selectiondefaults>",
         structure + "unexpected element 'a'"},
        {"<selectiondefaults><check type='content'><widgetType name='NoSuch'><a/>"
         "</widgetType></check></selectiondefaults>",
         ""},
    };
    for (const auto &[xml, message] : rows) {
        writeFile(file, xml);
        QString error;
        EXPECT_EQ(TitanSelectionDefaults().parse(&error), message.isEmpty());
        EXPECT_EQ(error, message.isEmpty()
                             ? QString()
                             : message.arg(path("") + "/etc/visualselectiondefaults.xml"));
    }
}

TEST_F(TitanSelectionDefaultsTest, NewChecksAreThoseOfTheElementsThatAreShown)
{
    writeFile(path("prefix/etc/visualselectiondefaults.xml"),
              "<selectiondefaults><check type='content'><widgetType name='QWidget'>"
              "<property name='b'/><property name='a'/></widgetType></check></selectiondefaults>");
    const EnvironmentGuard other("MORVEX_PREFIX", path("prefix").toLocal8Bit());
    const QLabel known;
    TitanSelectionDefaults defaults;
    ASSERT_TRUE(defaults.parse(nullptr));
    UIAbstraction::UIElement top("1", {}, "NoSuchClass");
    top.setGeometry(UIAbstraction::ElementGeometry(QRect(0, 0, 2, 2)));
    top.setImage(QImage(2, 2, QImage::Format_RGB32));
    top.setConcreteProperty("a", "x");
    auto *hidden = new UIAbstraction::UIElement("2", {}, "QLabel");
    hidden->setTransparentNode(true);
    hidden->setConcreteProperty("a", "x");
    top.addChild(hidden);
    auto *label = new UIAbstraction::UIElement("3", {}, "QLabel");
    for (const char *name : {"c", "b", "a"}) {
        label->setConcreteProperty(name, "");
        label->setIdentifyingProperty(name, *name == 'b' ? "x" : "");
    }
    hidden->addChild(label);
    TitanPropertyChecks checks(&defaults);
    checks.collectChecks(&top);
    EXPECT_EQ(checks.structuredDump(),
              "# identifying\n\n## Element ID '3'\n- 'b'\n\n# content\n\n## Element ID '3'\n- 'a'\n"
              "- 'b'\n\n# geometry\n\n## Element ID '1'\n- 'x'\n- 'y'\n- 'width'\n- 'height'\n\n"
              "# screenshot\n\n## Element ID '1'\n");
}
