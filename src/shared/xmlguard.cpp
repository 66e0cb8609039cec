#include "shared/xmlguard.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <tinyxml.h>

namespace Morvex {
namespace {

const int maxAttributes = 5000;

// The text with one character a byte, which keeps the markup and can't fail, and without the
// control characters and references that a strict parser stops at.
QString asMarkup(const std::string &xml)
{
    QString text = QString::fromLatin1(xml.data(), static_cast<int>(xml.size()));
    for (QChar &character : text) {
        const ushort code = character.unicode();
        const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
        if (isControl || code == '&')
            character = QLatin1Char(' ');
    }
    return text;
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

// What a strict reader finds in a text.
struct Shape
{
    // False when parsers may differ in what they make of the text.
    bool isCertain = true;
    int depth = 0;
    int mostAttributes = 0;
};

Shape shapeOf(const std::string &xml)
{
    QXmlStreamReader reader(asMarkup(xml));
    reader.setNamespaceProcessing(false);
    Shape shape;
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            shape.depth = qMax(shape.depth, ++depth);
            shape.mostAttributes = qMax(shape.mostAttributes, reader.attributes().size());
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::DTD:
        case QXmlStreamReader::ProcessingInstruction:
            shape.isCertain = false;
            return shape;
        default:
            break;
        }
    }
    shape.isCertain = !reader.hasError();
    return shape;
}

// The parser looks through all attributes of an element for each one.
bool hasTooManyAttributes(const std::string &xml)
{
    if (std::count(xml.begin(), xml.end(), '=') <= maxAttributes)
        return false;
    const Shape shape = shapeOf(xml);
    return !shape.isCertain || shape.mostAttributes > maxAttributes;
}

// The parser steps over a character by the length that its first byte tells, and so over the end.
bool endsWithinCharacter(const std::string &xml)
{
    for (std::size_t behind = 1; behind <= 3 && behind <= xml.size(); ++behind) {
        const auto byte = static_cast<unsigned char>(xml[xml.size() - behind]);
        const std::size_t length = byte >= 0xf0 ? 4 : byte >= 0xe0 ? 3 : byte >= 0xc0 ? 2 : 1;
        if (length > behind)
            return true;
    }
    return false;
}

// Texts that the parser does not survive, or not in reasonable time.
QString refusal(const std::string &xml)
{
    if (xml.find('\0') != std::string::npos)
        return QStringLiteral("The document holds a zero byte.");
    if (xmlNestsDeeperThan(xml, maxXmlDepth))
        return QStringLiteral("The elements are nested deeper than %1 levels.").arg(maxXmlDepth);
    if (endsWithinCharacter(xml))
        return QStringLiteral("The document ends within a character.");
    if (hasTooManyAttributes(xml))
        return QStringLiteral("An element has more than %1 attributes.").arg(maxAttributes);
    return {};
}

QString errorText(const TiXmlDocument &document)
{
    return document.Error() ? QString::fromLocal8Bit(document.ErrorDesc()) : QString();
}

} // namespace

bool xmlNestsDeeperThan(const std::string &xml, int maxDepth)
{
    // Most documents have not even as many tags.
    if (!hasMoreStartTagsThan(xml, maxDepth))
        return false;
    const Shape shape = shapeOf(xml);
    return !shape.isCertain || shape.depth > maxDepth;
}

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
