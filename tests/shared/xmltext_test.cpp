#include "shared/xmltext.h"

#include "support/runs.h"
#include "support/xmldocument.h"

#include <gtest/gtest.h>

using namespace Morvex;
using namespace MorvexTest;

TEST(XmlTextTest, WhatXmlCanNotHoldIsShownAndNothingElseChanges)
{
    const QString smiley = QString::fromUtf8("\U0001F600");
    const QString highHalf(QChar(0xd83d));
    const QString lowHalf(QChar(0xde00));
    const std::tuple<QString, QString, QString, QString> rows[] = {
        {"plain <&>\"' \u00e4", "plain <&>\"' \u00e4", "plain <&>\"' \u00e4",
         "plain <&>\"' \u00e4"},
        {"a\tb\nc\rd", "a\tb\nc\rd", "a\\tb\\nc\\rd", "a\\tb\\nc\\rd"},
        {"\x01\b\x1f\x7f", "\\x01\\b\\x1f\\x7f", "\\x01\\b\\x1f\\x7f", "\\u0001\\b\\u001f\\u007f"},
        {QString(QChar(0x85)), "\\x85", "\\x85", "\\u0085"},
        {QString(QChar(0xffff)), "\\uffff", "\\uffff", "\\uffff"},
        {smiley, smiley, smiley, smiley},
        {highHalf + 'a' + lowHalf, "\\ud83da\\ude00", "\\ud83da\\ude00", "\\ud83da\\ude00"},
        {lowHalf + highHalf, "\\ude00\\ud83d", "\\ude00\\ud83d", "\\ude00\\ud83d"},
        {"\x1b[1;31mred\x1b[0m", "red", "red", "\\u001b[1;31mred\\u001b[0m"},
        {"\x1b]8;;http://x\x1b\\link\x1b]8;;\x07", "link", "link",
         "\\u001b]8;;http://x\\u001b\\link\\u001b]8;;\\u0007"},
        {"a\x1b(Bb", "ab", "ab", "a\\u001b(Bb"},
        {"open\x1b[12", "open\\x1b[12", "open\\x1b[12", "open\\u001b[12"},
        {"open\x1b]0;title\nnext", "open\\x1b]0;title\nnext", "open\\x1b]0;title\\nnext",
         "open\\u001b]0;title\\nnext"},
        {"\x1b", "\\x1b", "\\x1b", "\\u001b"},
    };
    for (const auto &[text, clean, line, log] : rows) {
        EXPECT_EQ(replaceInvalidXMLcharacters(text), clean);
        EXPECT_EQ(escapeControls(text), line);
        EXPECT_EQ(escapeNonPrintable(text), log);
    }
}

TEST(XmlTextTest, AReaderGetsTheCleanTextBackFromEveryPlace)
{
    const QString clean = replaceInvalidXMLcharacters(hostileText());
    QByteArray document = "<a b=\"";
    appendXmlAttributeValue(document, hostileText());
    document += "\"><t>";
    appendXmlText(document, hostileText());
    document += "</t><c><![CDATA[";
    appendXmlCData(document, hostileText());
    document += "]]></c></a>";
    const XmlDocument read(document);
    ASSERT_EQ(read.error(), QString());
    EXPECT_EQ(read.text("/a/@b"), clean);
    EXPECT_EQ(read.text("/a/t"), clean);
    // Within CDATA a carriage return can't be kept: readers make a line feed of it.
    EXPECT_EQ(read.text("/a/c"), QString(clean).replace("\r", "\n"));
}

TEST(XmlTextTest, BeginningsOfSequencesTakeNoSquareTime)
{
    for (const char *beginning : {"\x1b[", "\x1b]", "\x1b(", "\x1b[0"})
        EXPECT_FALSE(replaceInvalidXMLcharacters(QString(beginning).repeated(1 << 20)).isEmpty());
}
