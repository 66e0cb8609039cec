#include "shared/xml/xmlguard.h"

#include "support/test.h"

#include <QTemporaryFile>

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

// The error text.
QString load(const std::string &document)
{
    QTemporaryFile file;
    EXPECT_TRUE(file.open());
    file.write(document.data(), qint64(document.size()));
    file.close();
    TiXmlDocument parsed;
    return loadXmlFile(file.fileName(), &parsed);
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
        "<!DOCTYPE a SYSTEM '" + repeated("><a>", 200000) + "'><a/>",
        "<?note " + repeated("><a>", 200000) + "?><a/>",
    };
    for (const std::string &document : documents)
        EXPECT_NE(load(document), "") << document.substr(0, 60);
    EXPECT_EQ(load(documents[0]), "The elements are nested deeper than 500 levels.");
    // This parser would take it; the reason says what to mend.
    EXPECT_TRUE(load("<a>" + repeated("<b\nc=1/>", 501) + "</a>").contains("line 2, column 3"));
    std::string attributes;
    for (int i = 0; i < 100000; ++i)
        attributes += " b" + std::to_string(i) + "='c'";
    EXPECT_EQ(load("<a" + attributes + "/>"), "An element has more than 5000 attributes.");
}

TEST(XmlGuardTest, ATextThatEndsWithinACharacterIsNotReadBeyondItsEnd)
{
    for (const char *document : {"<a", "<a>", "<a b='c'/>", "<!--", ""}) {
        for (const char *end : {"\xc3", "\xe2\x82", "\xe9", "\xf0\x9f\x98", "\xf4"}) {
            EXPECT_EQ(load(std::string(document) + end), "The document ends within a character.");
        }
        EXPECT_NE(load(std::string(document) + "\xe2\x82\xac"),
                  "The document ends within a character.");
    }
}

TEST(XmlGuardTest, LongAndFlatDocumentsPass)
{
    const std::string documents[] = {
        "<t>" + repeated("<r><c>x</c></r>", 20000) + "</t>",
        "<t>" + repeated("<c>&#x1;\x01 <![CDATA[<a><a>]]><!--<a>--></c>", 2000) + "</t>",
        repeated("<a>", 500) + repeated("</a>", 500),
        "<!DOCTYPE t><?note x?><t>" + repeated("<\xc3\xa9/>", 600) + "</t>",
    };
    for (const std::string &document : documents)
        EXPECT_EQ(load(document), "") << document.substr(0, 60);
}

TEST(XmlGuardTest, NoTextThatGetsToTheParserIsTooDeepForIt)
{
    const QList<QByteArray> tokens =
        QByteArray("<a>|</a>|<a/>|<!--|-->|<!-->|<![CDATA[|]]>|<?xml version=\"|?>|<?x |\"|'|>|<|/|"
                   "<!DOCTYPE a [|]>|x|&amp;|<a b='|<_| ")
            .split('|');
    std::mt19937 random(5);
    // Of the 500 levels that are allowed.
    const int around = 490;
    int deepOnes = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string document;
        for (int i = 0; i < 60; ++i)
            document +=
                tokens[random() % 2 ? 0 : int(random() % unsigned(tokens.size()))].constData();
        TiXmlDocument alone;
        alone.Parse(document.c_str());
        if (depthOf(alone) <= 500 - around)
            continue;
        const std::string nested = repeated("<a>", around) + document + repeated("</a>", around);
        TiXmlDocument parsed;
        parsed.Parse(nested.c_str());
        if (depthOf(parsed) <= 500)
            continue;
        ++deepOnes;
        TiXmlDocument guarded;
        ASSERT_NE(parseXml(nested, &guarded), "") << document;
        ASSERT_FALSE(guarded.FirstChild()) << document;
    }
    EXPECT_GT(deepOnes, 100);
}
