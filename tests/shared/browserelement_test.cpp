#include "shared/browserelement.h"

#include "shared/uiabstraction/uielement.h"
#include "support/test.h"

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray uiOf(const QByteArray &elements)
{
    return "<ui version=\"1.0\"><execution><state>" + elements + "</state></execution></ui>";
}

QByteArray geometryOf(const QByteArray &values, const char *isRelative = "0")
{
    return "<abstractProperties><geometry isRelative=\"" + QByteArray(isRelative) + "\">" + values +
           "</geometry></abstractProperties>";
}

const QByteArray place = "<x>10</x><y>20</y><width>30</width><height>40</height>";

class BrowserElementTest : public testing::Test
{
protected:
    const BrowserElement *read(const QByteArray &element)
    {
        root.clear();
        EXPECT_TRUE(BrowserElement::readXML(&root, uiOf(element), &error)) << error.toStdString();
        return root.children().value(0);
    }

    BrowserElement root{nullptr, QStringLiteral("live")};
    QString error;
};

} // namespace

TEST_F(BrowserElementTest, ErrorsSayWhatIsWrongAndWhere)
{
    const std::pair<QByteArray, const char *> rows[] = {
        {"<ui>\n <a", "XML Parse Error at 2:3: Failed to read Element name"},
        {"<!-- a -->", "Expected element <ui> at 1:1 got <>"},
        {"\n <gui/>", "Expected element <ui> at 2:2 got <gui>"},
        {"<ui version=\"%2\"/>", "Unsupported version of <ui> element: '%2'"},
        {"<ui/>", "Expected child element for <ui> at 1:1"},
        {"<ui><state/></ui>", "Expected element <execution> at 1:5 got <state>"},
        {"<ui><execution><state><a/></state></execution></ui>",
         "Expected element <element> at 1:23 got <a>"},
        {uiOf("<element>" + geometryOf("<x>%2</x>") + "</element>"),
         "Invalid value for attribute 'x': '%2'"},
        {uiOf("<element>" + geometryOf("<y/>") + "</element>"),
         "Invalid value for attribute 'y': ''"},
        {uiOf("<element><coveragedata><coverage name=\"a\">1.5</coverage></coveragedata>"
              "</element>"),
         "Couldn't convert coverage value to int: '1.5'"},
        {QByteArray("<element>").repeated(1000), "The elements are nested deeper than 500 levels."},
    };
    for (const auto &[xml, message] : rows) {
        EXPECT_FALSE(BrowserElement::readXML(&root, xml, &error)) << message;
        EXPECT_EQ(error, QLatin1String(message));
        EXPECT_FALSE(BrowserElement::readXML(&root, xml, nullptr));
    }
    EXPECT_TRUE(BrowserElement::readXML(&root, "<ui><execution/></ui>", &error));
}

TEST_F(BrowserElementTest, WhatIsNestedTooDeepIsLeftOutAndTheRestIsRead)
{
    const int levels = UIAbstraction::maxElementLevels + 1;
    const QByteArray start = "<element><children>";
    const QByteArray end = "</children></element>";
    standardErrorOf([&] { read(start.repeated(levels) + end.repeated(levels) + "<element/>"); });
    ASSERT_EQ(root.children().size(), 2);
    int read = 0;
    for (auto *element = &root; !element->children().isEmpty(); ++read)
        element = element->children().first();
    EXPECT_EQ(read, levels - 1);
}

TEST_F(BrowserElementTest, NothingIsAChildOfItself)
{
    BrowserElement top(nullptr, "top");
    auto *child = new BrowserElement(&top, "child");
    child->attach(&top);
    child->attach(child);
    child->attach(nullptr);
    EXPECT_EQ(child->parent(), &top);
    EXPECT_TRUE(child->children().isEmpty());
}

TEST_F(BrowserElementTest, GeometryAddsUpFromTheScreenDown)
{
    const std::pair<QByteArray, QRect> rows[] = {
        {place, QRect(10, 20, 30, 40)},
        {"<width>30</width><height>40</height><x>10</x><y>20</y>",
         QRect(QPoint(10, 20), QPoint(29, 39))},
        {"<x>0</x><y>0</y><width>99999999999</width><height>1</height>",
         QRect(QPoint(0, 0), QPoint(std::numeric_limits<int>::max() - 1, 0))},
        {"<x>5</x>", QRect()},
    };
    for (const auto &[values, expected] : rows)
        EXPECT_EQ(read("<element>" + geometryOf(values) + "</element>")->absoluteGeometry(),
                  expected);
    const BrowserElement *top =
        read("<element>" + geometryOf(place) + "<children><element>" + geometryOf(place, "1") +
             "<children><element>" + geometryOf(place, "1") +
             "</element></children></element></children></element>");
    const BrowserElement *inner = top->children().first()->children().first();
    EXPECT_EQ(inner->absoluteGeometry(), QRect(30, 60, 30, 40));
    EXPECT_EQ(inner->relativeGeometry(), QRect(10, 20, 30, 40));
    EXPECT_TRUE(inner->isDescendantOf(top));
    EXPECT_FALSE(top->isDescendantOf(top));
    BrowserElement alone(nullptr, QString());
    alone.setGeometry(UIAbstraction::ElementGeometry(QRect(1, 2, 3, 4), true));
    EXPECT_FALSE(alone.absoluteGeometry().isValid());
}

TEST_F(BrowserElementTest, ElementsAreShownByTheirTextOrElseTypeClassAndName)
{
    const std::pair<const char *, const char *> rows[] = {
        {"<element type='button' class='QPushButton'><abstractProperties><text>Add"
         "</text></abstractProperties></element>",
         "Add"},
        {"<element type='button' class='QPushButton'/>", "[button]"},
        {"<element class='QPushButton'/>", "QPushButton"},
        {"<element/>", "<element>"},
    };
    for (const auto &[xml, name] : rows)
        EXPECT_EQ(read(xml)->displayName(), QLatin1String(name));
}

TEST_F(BrowserElementTest, MergedFilesAddTheirCountsUp)
{
    const QTemporaryDir dir;
    const auto element = [](const char *attributes, const char *clicks, const QByteArray &more) {
        return "<element " + QByteArray(attributes) + "><coveragedata><coverage name='click'>" +
               clicks + "</coverage><coverage name='key'>0</coverage></coveragedata><children>" +
               more + "</children></element>";
    };
    const auto file = [&dir](const char *name, const QByteArray &content) {
        writeFile(dir.filePath(QLatin1String(name)), content);
        return dir.filePath(QLatin1String(name));
    };
    const QString first = file(
        "1", uiOf(element("class='W'", "2",
                          element("class='B'", "0", {}) + element("class='C'", "2147483647", {}))));
    const QString second =
        file("2", uiOf(element("class='W'", "1",
                               element("class='C'", "3", {}) + element("class='D'", "0", {})) +
                       element("class='X'", "1", {})));
    EXPECT_EQ(root.coveragePercentage(true), 100.0);
    ASSERT_TRUE(root.mergeXmlFiles({first, second}, error)) << error.toStdString();
    ASSERT_EQ(root.children().size(), 2);
    const BrowserElement *window = root.children().first();
    EXPECT_EQ(window->coverage(QStringLiteral("click")), 3);
    EXPECT_EQ(window->coverage(QStringLiteral("drag")), -1);
    ASSERT_EQ(window->children().size(), 3);
    EXPECT_EQ(window->children().at(1)->coverage(QStringLiteral("click")), 2147483647);
    EXPECT_EQ(root.coverageExpected(true), 10);
    EXPECT_EQ(root.coverageActual(true), 3);
    EXPECT_EQ(root.coveragePercentage(true), 30.0);
    window->children().first()->setCoverage(QStringLiteral("click"), 1);
    EXPECT_EQ(root.coveragePercentage(true), 40.0);
    EXPECT_EQ(window->coveragePercentage(false), 50.0);

    const QString broken = file("3", "<gui/>");
    EXPECT_FALSE(root.mergeXmlFiles({broken, first}, error));
    EXPECT_FALSE(root.mergeXmlFiles({dir.filePath(QStringLiteral("none"))}, error));
    EXPECT_TRUE(error.contains(QLatin1String("none"))) << error.toStdString();
}

TEST(StyleCheckResultTest, DescriptionsHaveTheValuesThatThereAre)
{
    const QVariant none;
    const std::tuple<QVariant, QVariant, const char *> rows[] = {
        {none, none, ""},
        {none, 3, " (Expected: at least 3)"},
        {QStringLiteral("%1"), 3, " (Actual: %1, Expected: at least 3)"},
        {2, none, " (Actual: 2)"},
    };
    for (const auto &[actual, expected, values] : rows) {
        StyleCheckResult result = StyleCheckResult::sufficientMenuItems();
        EXPECT_FALSE(result.isValid());
        result.setResult(StyleCheckResult::Failed, actual, expected);
        EXPECT_EQ(result.description(true), result.description(false) + QLatin1String(values));
        EXPECT_TRUE(result.isValid() && !result.hasPassed());
    }
}
