#include "test/testfilters.h"

#include <gtest/gtest.h>

using namespace Morvex;

namespace {

using Tags = std::vector<std::string>;

std::unique_ptr<FilterInterface> makeFilter(const QStringList &arguments,
                                            const std::vector<unsigned int> &indices = {})
{
    QString error;
    std::unique_ptr<FilterInterface> filter(allFilterByArgs(arguments, indices, &error));
    EXPECT_EQ(error, "");
    return filter;
}

} // namespace

TEST(TestFiltersTest, WhichTagsPassWhichArguments)
{
    const std::tuple<QStringList, Tags, bool> rows[] = {
        {{}, {}, true},
        {{}, {"a"}, true},
        {{"a,b", "c"}, {"b", "c"}, true},
        {{"a,b", "c"}, {"a", "b"}, false},
        {{"a,b", "c"}, {"c"}, false},
        {{"~a"}, {}, true},
        {{"~a"}, {"b"}, true},
        {{"~a"}, {"b", "a"}, false},
        {{"@a"}, {"a"}, true},
        {{"~@a"}, {"a"}, false},
        {{"@~a"}, {"~a"}, true},
        {{"@~a"}, {"b"}, false},
        {{"untagged"}, {}, true},
        {{"@untagged"}, {"a"}, false},
        {{"untagged,a"}, {"a"}, true},
        {{""}, {"a"}, false},
        {{",,"}, {}, false},
        {{"~"}, {"a"}, true},
        {{"~"}, {""}, false},
        {{"Smoke"}, {"smoke"}, false},
        {{"gr\xc3\xbcn"}, {"gr\xc3\xbcn"}, true},
    };
    for (const auto &[arguments, tags, passes] : rows)
        EXPECT_EQ(makeFilter(arguments)->shouldExecuteWithTags(tags), passes)
            << arguments.join(" & ").toStdString();
}

TEST(TestFiltersTest, AReservedTagCannotBeNegated)
{
    for (const char *argument : {"~untagged", "~@untagged", "a,~untagged"}) {
        QString error;
        EXPECT_EQ(allFilterByArgs({"x", argument}, {}, &error), nullptr);
        EXPECT_EQ(error, "~ operator is not supported for reserved tag: untagged");
    }
}

TEST(TestFiltersTest, ScenariosAreCountedOnlyWhenTheyAreAskedFor)
{
    const auto two = makeFilter({}, {1, 2});
    std::vector<bool> answers;
    for (int i = 0; i < 5; ++i)
        answers.push_back(two->shouldExecuteWithTags({}));
    EXPECT_EQ(answers, (std::vector<bool>{false, true, false, true, false}));

    const auto tagged = makeFilter({"a"}, {1});
    EXPECT_FALSE(tagged->shouldExecuteWithTags({"a"}));
    EXPECT_FALSE(tagged->shouldExecuteWithTags({"b"}));
    EXPECT_TRUE(tagged->shouldExecuteWithTags({"a"}));
}
