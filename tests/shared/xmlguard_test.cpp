#include "shared/xmlguard.h"

#include <QByteArray>

#include <gtest/gtest.h>
#include <random>
#include <tinyxml.h>

using namespace Morvex;

namespace {

std::string repeated(const char *text, int count)
{
    return QByteArray(text).repeated(count).toStdString();
}

int depthOf(const TiXmlNode &node)
{
    int deepest = 0;
    for (const TiXmlNode *child = node.FirstChild(); child; child = child->NextSibling())
        deepest = std::max(deepest, depthOf(*child) + (child->ToElement() ? 1 : 0));
    return deepest;
}

} // namespace

TEST(XmlGuardTest, WhatWouldOverrunTheParserIsRefused)
{
    const std::string documents[] = {
        repeated("<a>", 200000),
        // End tags without a start, which the parser takes for something else.
        repeated("</a>", 200000) + repeated("<a>", 200000),
        // A comment that only seems to end at once.
        repeated((repeated("<a>", 400) + "<!-->" + repeated("</a>", 400) + "-->").c_str(), 500),
        "<?xml version=\"" + repeated("></a>", 200000) + "\"?>" + repeated("<a>", 200000),
        "<!DOCTYPE a [<!ENTITY e \"" + repeated("<a>", 200000) + "\">]><a/>",
    };
    for (const std::string &document : documents) {
        TiXmlDocument parsed;
        EXPECT_EQ(parseXml(document, &parsed), "The elements are nested deeper than 500 levels.");
    }
}

TEST(XmlGuardTest, ATextThatEndsWithinACharacterIsNotReadBeyondItsEnd)
{
    for (const char *document : {"<a", "<a>", "<a b='c'/>", "<!--", ""}) {
        for (const char *end : {"\xc3", "\xe2\x82", "\xe9", "\xf0\x9f\x98", "\xf4"}) {
            TiXmlDocument parsed;
            EXPECT_EQ(parseXml(std::string(document) + end, &parsed),
                      "The document ends within a character.");
        }
        TiXmlDocument parsed;
        EXPECT_NE(parseXml(std::string(document) + "\xe2\x82\xac", &parsed),
                  "The document ends within a character.");
    }
}

TEST(XmlGuardTest, LongAndFlatDocumentsPass)
{
    const std::string documents[] = {
        "<t>" + repeated("<r><c>x</c></r>", 20000) + "</t>",
        "<t>" + repeated("<c>&#x1;\x01 <![CDATA[<a><a>]]><!--<a>--></c>", 2000) + "</t>",
        repeated("<a>", 500) + repeated("</a>", 500),
    };
    for (const std::string &document : documents) {
        TiXmlDocument parsed;
        EXPECT_EQ(parseXml(document, &parsed), "") << document.substr(0, 60);
    }
}

TEST(XmlGuardTest, NoTextLiesDeeperInTheParserThanTheGuardSays)
{
    const char *const tokens[] = {"<a>",
                                  "</a>",
                                  "<a/>",
                                  "<!--",
                                  "-->",
                                  "<!-->",
                                  "<![CDATA[",
                                  "]]>",
                                  "<?xml version=\"",
                                  "?>",
                                  "<?x ",
                                  "\"",
                                  "'",
                                  ">",
                                  "<",
                                  "/",
                                  "<!DOCTYPE a [",
                                  "]>",
                                  "x",
                                  "&amp;",
                                  "<a b='",
                                  "<_",
                                  " "};
    std::mt19937 random(5);
    const int limit = 8;
    int deepOnes = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string document;
        for (int i = 0; i < 60; ++i)
            document += random() % 2 ? tokens[0] : tokens[random() % std::size(tokens)];
        TiXmlDocument parsed;
        parsed.Parse(document.c_str());
        if (depthOf(parsed) <= limit)
            continue;
        ++deepOnes;
        ASSERT_TRUE(xmlNestsDeeperThan(document, limit)) << document;
    }
    EXPECT_GT(deepOnes, 1000);
}
