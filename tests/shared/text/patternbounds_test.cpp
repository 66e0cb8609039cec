#include "shared/text/patternbounds.h"

#include <QRegExp>
#include <QString>

#include <gtest/gtest.h>

using namespace Morvex;

TEST(PatternBoundsTest, PatternsThatPeopleWriteAreKept)
{
    const std::pair<QString, QString> rows[] = {
        {"a{999}", QString(999, 'a')},
        {"(\\d{1,3}\\.){3}\\d{1,3}", "192.168.0.1"},
        {"(?:a(b(c)?)?)*", "abcabaabc"},
        {"[](){999}]+(x|y)?", "(){9}]x"},
        {QString("\\(").repeated(1000), QString(1000, '(')},
        {QString("a?").repeated(500), QString(500, 'a')},
        {QString(20000, 'a') + "[b]", QString(20000, 'a') + "b"},
        {"(.{80}\n){100}", (QString(80, 'x') + "\n").repeated(100)},
    };
    for (const auto &[pattern, text] : rows) {
        EXPECT_TRUE(isBoundedPattern(pattern)) << pattern.left(40).toStdString();
        EXPECT_TRUE(QRegExp(pattern).exactMatch(text)) << pattern.left(40).toStdString();
    }
}

TEST(PatternBoundsTest, PatternsThatTakeTheStackTheMemoryOrHoursAreRefused)
{
    const QString rows[] = {
        QString(20000, '(') + QString(20000, ')'),
        QString(20000, '('),
        "(((a{999}){999}){999})",
        "(?:(?:[ab]{900}){900})",
        "(a{0,300}){0,300}",
        "(a*){5000}",
        QString("a?").repeated(5000),
        "((a{99999999999999999999}){2}){2",
    };
    for (const QString &pattern : rows)
        EXPECT_FALSE(isBoundedPattern(pattern)) << pattern.left(40).toStdString();
    for (const char *cut : {"", "[", "[^", "\\", "a{", "a{1,", "(?", "a{,}"})
        EXPECT_TRUE(isBoundedPattern(cut)) << cut;
}
