#include "test/xmlstreamwriter.h"

#include "support/test.h"

#include <sstream>

using namespace Morvex;
using namespace MorvexTest;

TEST(XmlStreamWriterTest, CDataCanHoldItsOwnTerminator)
{
    const std::pair<const char *, const char *> rows[] = {
        {"", "<e/>"},
        {"a", "<e><![CDATA[a]]></e>"},
        {"x]]>y", "<e><![CDATA[x]]]]><![CDATA[>y]]></e>"},
        {"]]]>", "<e><![CDATA[]]]]]><![CDATA[>]]></e>"},
        {"]]>]]>", "<e><![CDATA[]]]]><![CDATA[>]]]]><![CDATA[>]]></e>"},
        {"]] >", "<e><![CDATA[]] >]]></e>"},
        {"a]", "<e><![CDATA[a]]]></e>"},
        {"a]]", "<e><![CDATA[a]]]]></e>"},
        {"]\x07]>", "<e><![CDATA[]]]]><![CDATA[>]]></e>"},
        {"\t\r\n<&>\xc3\xa4", "<e><![CDATA[\t\r\n<&>\xc3\xa4]]></e>"},
    };
    for (const auto &[text, expected] : rows) {
        std::ostringstream out;
        XmlStreamWriter writer(out);
        standardErrorOf([&, text = text] { writer.writeCDataElement("e", text); });
        EXPECT_EQ(out.str(), expected) << text;
    }
}

TEST(XmlStreamWriterTest, MarkupIsEscapedAndBlanksOnlyInAttributes)
{
    std::ostringstream out;
    XmlStreamWriter writer(out);
    writer.writeStartElement("e");
    writer.writeAttribute("a", "<&>\"'\t\n\r\xc3\xa4");
    writer.writeIntAttribute("n", -3);
    writer.writeCharacters("<&>\"'\t\n\r\xc3\xa4");
    writer.writeEndElement();
    EXPECT_EQ(out.str(), "<e a=\"&lt;&amp;&gt;&quot;&apos;&#9;&#10;&#13;\xc3\xa4\" n=\"-3\">"
                         "&lt;&amp;&gt;&quot;&apos;\t\n\r\xc3\xa4</e>");
}

TEST(XmlStreamWriterTest, EachIllegalCharacterIsDroppedAndReported)
{
    std::ostringstream out;
    XmlStreamWriter writer(out);
    const std::string errors = standardErrorOf([&] {
        writer.writeTextElement("e", std::string("a\0b\x1f", 4));
        writer.writeCDataElement("e", "\x07");
    });
    EXPECT_EQ(out.str(), "<e>ab</e><e><![CDATA[]]></e>");
    EXPECT_EQ(errors, "Warning: illegal character 0 in XML string\n"
                      "Warning: illegal character 31 in XML string\n"
                      "Warning: illegal character 7 in XML CData\n");
}

TEST(XmlStreamWriterTest, AutoFormattingPutsEachElementOnALineOfItsOwn)
{
    std::ostringstream out;
    XmlStreamWriter writer(out);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement("a");
    writer.writeAttribute("k", "v");
    EXPECT_EQ(out.str().substr(out.str().find('\n')), "\n<a k=\"v\"");
    writer.writeTextElement("b", "text");
    writer.writeStartElement("c");
    writer.writeTextElement("d", "");
    writer.writeEndDocument();
    EXPECT_EQ(out.str(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<a k=\"v\">\n"
                         "    <b>text</b>\n"
                         "    <c>\n"
                         "        <d/>\n"
                         "    </c>\n"
                         "</a>\n");
}
