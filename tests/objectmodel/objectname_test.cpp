#include "objectmodel/objectname.h"

#include "objectmodel/objectmap.h"

#include "support/test.h"

using namespace Morvex;

TEST(ObjectNameTest, ATextAndItsPropertiesAreTheSame)
{
    const std::pair<const char *, const char *> rows[] = {
        {"{type='A' name='b'}", "{name='b' type='A'}"},
        {"{ a = 'it\\'s' b ?= '\\\\*' c ~= '^x$' }", "{a='it\\'s' b?='\\\\*' c~='^x$'}"},
        {"{parent={name='x'} window=':Main'}", "{parent={name='x'} window=':Main'}"},
        {"{a={y='1'  x='2'}}", "{a={x='2' y='1'}}"},
        {"{a~='\\d+\\\\'}", "{a~='\\\\d+\\\\'}"},
        {"{text=''}", "{text=''}"},
        {" \t{text='a'} ", "{text='a'}"},
        {"{text='a' occurrence='2'}", "{occurrence='2' text='a'}"},
        {":Save", ":Save"},
        {"plain", "plain"},
        {" :Save\n", ":Save"},
        {"\ttwo words ", "two words"},
    };
    for (const auto &[text, qualified] : rows) {
        const ObjectName name{QString(text)};
        EXPECT_TRUE(name.isValid()) << text << name.error().toStdString();
        EXPECT_EQ(name.qualifiedName(), qualified);
        EXPECT_EQ(ObjectName(name.qualifiedName()), name);
        EXPECT_EQ(name.isMultiProperty(), qualified[0] == '{');
    }
}

TEST(ObjectNameTest, KindsOfValuesAreKept)
{
    const auto properties = ObjectName("{a='1' b?='2' c~='3' d={x='4'} e=':5'}").properties();
    EXPECT_EQ(properties["a"].kind, ObjectName::PropertyValue::EXACT);
    EXPECT_EQ(properties["b"].kind, ObjectName::PropertyValue::WILDCARD);
    EXPECT_EQ(properties["c"].kind, ObjectName::PropertyValue::REGEXP);
    EXPECT_EQ(properties["d"].kind, 1);
    EXPECT_EQ(properties["d"].text, "{x='4'}");
    EXPECT_EQ(properties["e"].text, ":5");
}

TEST(ObjectNameTest, AWrongTextSaysWhere)
{
    const std::pair<QString, const char *> rows[] = {
        {"{", "\"}\" is missing, at character 2"},
        {"{}", "the name has no properties, at character 3"},
        {"{name}", "\"=\", \"?=\" or \"~=\" is missing, at character 6"},
        {"{name=x}", "a value in single quotes is missing, at character 7"},
        {"{name='x", "the closing single quote is missing, at character 9"},
        {"{name='x\\", "the closing single quote is missing, at character 10"},
        {"{name='x'}y", "nothing may follow the closing \"}\", at character 11"},
        {"{a='1' a='2'}", "property 'a' is given twice, at character 9"},
        {"{='1'}", "a property name is missing, at character 2"},
        {"{window?='a'}", "'window' takes a name, with \"=\", at character 10"},
        {"{occurrence='a'}", "'occurrence' must be a number, 1 or greater, at character 16"},
        {"{occurrence='0'}", "'occurrence' must be a number, 1 or greater, at character 16"},
        {"{occurrence?='1'}", "'occurrence' must be a number, 1 or greater, at character 17"},
        {QString("{a=").repeated(1000), "the name is nested too deeply, at character 304"},
    };
    for (const auto &[text, error] : rows) {
        EXPECT_EQ(ObjectName(text).error(), error);
        EXPECT_FALSE(ObjectName(text).isMultiProperty());
    }
}

TEST(ObjectMapTest, NamesOfAFileAreFoundAndNewOnesAreUnique)
{
    const auto entries = ObjectMap::parseSerializedMap(
        ":Save\t{text='Save'}\n\n# comment\n:Load\t{text='Load'}\r\nno\ttab");
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[1].first, ":Load");
    EXPECT_EQ(entries[1].second.qualifiedName(), "{text='Load'}");

    ObjectMap map;
    for (const auto &entry : entries)
        map.insert(entry.first, entry.second);
    EXPECT_EQ(map.symbolicName("{text='Load'}", false), ":Load");
    EXPECT_EQ(map.symbolicName("{text='New'}", false), "{text='New'}");
    EXPECT_EQ(map.symbolicName("{text='Save' type='QAction'}", true), ":Save_2");
    EXPECT_EQ(map.symbolicName("{type='QAction' text='Save'}", true), ":Save_2");
}
