#include "shared/xmlguard.h"

#include <QDir>
#include <QFile>
#include <QXmlStreamReader>

#include <cctype>
#include <tinyxml.h>

namespace Morvex {
namespace {

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

bool startsName(unsigned char character)
{
    return character >= 0x7f || std::isalpha(character) || character == '_';
}

bool hasMoreStartTagsThan(const std::string &xml, int limit)
{
    int tags = 0;
    for (std::size_t i = 0; i + 1 < xml.size() && tags <= limit; ++i) {
        if (xml[i] == '<' && startsName(static_cast<unsigned char>(xml[i + 1])))
            ++tags;
    }
    return tags > limit;
}

// -1 when parsers may differ in what they make of the text.
int depthOf(const std::string &xml, int maxDepth)
{
    QXmlStreamReader reader(asMarkup(xml));
    reader.setNamespaceProcessing(false);
    int depth = 0;
    int deepest = 0;
    while (!reader.atEnd() && deepest <= maxDepth) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            deepest = qMax(deepest, ++depth);
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::DTD:
        case QXmlStreamReader::ProcessingInstruction:
            return -1;
        default:
            break;
        }
    }
    return reader.hasError() ? -1 : deepest;
}

// Texts that the parser does not survive, or not in reasonable time.
QString refusal(const std::string &xml)
{
    if (xml.find('\0') != std::string::npos)
        return QStringLiteral("The document holds a zero byte.");
    if (xmlNestsDeeperThan(xml, maxXmlDepth))
        return QStringLiteral("The elements are nested deeper than %1 levels.").arg(maxXmlDepth);
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
    const int depth = depthOf(xml, maxDepth);
    return depth < 0 || depth > maxDepth;
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
    if (file.open(QIODevice::ReadOnly)) {
        const QString error = refusal(file.readAll().toStdString());
        if (!error.isEmpty())
            return error;
    }
    // What can't be opened is the parser's to report.
    document->LoadFile(QFile::encodeName(QDir::toNativeSeparators(path)).constData());
    return errorText(*document);
}

} // namespace Morvex
