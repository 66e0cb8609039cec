#include "shared/xml/xmlguard.h"

#include "shared/xml/xmlparser.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <tinyxml.h>

namespace Morvex {
namespace {

const int maxAttributes = 5000;

// The same markup in characters that can't fail a strict parser, without references.
std::string asMarkup(std::string xml)
{
    for (char &character : xml) {
        const auto code = static_cast<unsigned char>(character);
        const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
        if (isControl || code == '&')
            character = ' ';
        else if (code >= 0x7f)
            character = 'x';
    }
    return xml;
}

// Parsers differ in the characters that begin a name.
bool mayStartName(char character)
{
    return character != '/' && character != '!' && character != '?';
}

bool hasMoreStartTagsThan(const std::string &xml, int limit)
{
    int tags = 0;
    for (std::size_t i = 0; i + 1 < xml.size() && tags <= limit; ++i) {
        if (xml[i] == '<' && mayStartName(xml[i + 1]))
            ++tags;
    }
    return tags > limit;
}

// The lenient parser ends these at the first ">".
bool mayHideMarkup(const char *text)
{
    return text && std::strpbrk(text, "<>");
}

// What a strict reader finds in a text.
class Shape : public XmlContentHandler
{
public:
    explicit Shape(const std::string &xml)
        : m_error(parseXmlContent(asMarkup(xml), *this))
    {
    }

    /// False when parsers may differ in what they make of the text.
    bool isCertain() const { return m_error.text.isEmpty() && !m_hidesMarkup; }
    /// Why it is not.
    QString uncertainty() const
    {
        return m_error.text.isEmpty() ? QStringLiteral("a declaration holds \"<\" or \">\"")
                                      : QStringLiteral("line %1, column %2: %3")
                                            .arg(QString::number(m_error.line),
                                                 QString::number(m_error.column), m_error.text);
    }
    bool isTooDeep() const { return m_error.text == xmlNestedTooDeep(); }
    int mostAttributes() const { return m_mostAttributes; }

private:
    void startElement(const char *, const char *const *attributes) override
    {
        int values = 0;
        while (attributes[values])
            ++values;
        m_mostAttributes = std::max(m_mostAttributes, values / 2);
    }
    void endElement() override {}
    void text(std::string_view) override {}
    void declaration(const char *version, const char *encoding) override
    {
        look(version, encoding);
    }
    void documentType(const char *, const char *publicId, const char *systemId) override
    {
        look(publicId, systemId);
    }
    void processingInstruction(const char *target, const char *data) override
    {
        look(target, data);
    }

    void look(const char *a, const char *b)
    {
        m_hidesMarkup = m_hidesMarkup || mayHideMarkup(a) || mayHideMarkup(b);
    }

    int m_mostAttributes = 0;
    bool m_hidesMarkup = false;
    XmlError m_error;
};

// Large documents are read only when it is sure what the parser makes of them.
QString uncertain(const Shape &shape)
{
    QString reason = shape.uncertainty();
    if (reason.endsWith(QLatin1Char('.')))
        reason.chop(1);
    return QStringLiteral("The document is large and cannot be checked: %1.").arg(reason);
}

QString depthError(const std::string &xml)
{
    // Most documents have not even as many tags.
    if (!hasMoreStartTagsThan(xml, maxXmlDepth))
        return {};
    const Shape shape(xml);
    if (shape.isTooDeep())
        return xmlNestedTooDeep();
    return shape.isCertain() ? QString() : uncertain(shape);
}

// The parser looks through all attributes of an element for each one.
QString attributesError(const std::string &xml)
{
    if (std::count(xml.begin(), xml.end(), '=') <= maxAttributes)
        return {};
    const Shape shape(xml);
    if (shape.mostAttributes() > maxAttributes)
        return QStringLiteral("An element has more than %1 attributes.").arg(maxAttributes);
    return shape.isCertain() ? QString() : uncertain(shape);
}

// The parser takes the length of a character from its first byte, and so steps over the end.
bool endsWithinCharacter(const std::string &xml)
{
    for (std::size_t left = 1; left <= 3 && left <= xml.size(); ++left) {
        const auto byte = static_cast<unsigned char>(xml[xml.size() - left]);
        const std::size_t length = byte >= 0xf0 ? 4 : byte >= 0xe0 ? 3 : byte >= 0xc0 ? 2 : 1;
        if (length > left)
            return true;
    }
    return false;
}

// Texts that the parser does not survive, or not in reasonable time.
QString refusal(const std::string &xml)
{
    if (xml.find('\0') != std::string::npos)
        return QStringLiteral("The document holds a zero byte.");
    const QString error = depthError(xml);
    if (!error.isEmpty())
        return error;
    if (endsWithinCharacter(xml))
        return QStringLiteral("The document ends within a character.");
    return attributesError(xml);
}

QString errorText(const TiXmlDocument &document)
{
    return document.Error() ? QString::fromLocal8Bit(document.ErrorDesc()) : QString();
}

} // namespace

QString parseXml(const std::string &xml, TiXmlDocument *document)
{
    const QString error = refusal(xml);
    if (!error.isEmpty())
        return error;
    document->Parse(xml.c_str(), nullptr, TIXML_ENCODING_UTF8);
    return errorText(*document);
}

QString loadXmlFile(const QString &path, TiXmlDocument *document)
{
    QFile file(path);
    // A directory and a pipe can be opened, too.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return QStringLiteral("Failed to open file");
    const std::string xml = file.readAll().toStdString();
    const QString error = refusal(xml);
    if (!error.isEmpty())
        return error;
    // The parser gets the bytes that were looked at, and reads them as it reads files.
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> stream(
        ::fmemopen(const_cast<char *>(xml.data()), xml.size(), "rb"), &std::fclose);
    if (stream && !xml.empty())
        document->LoadFile(stream.get());
    else
        document->Parse(xml.c_str());
    return errorText(*document);
}

} // namespace Morvex
