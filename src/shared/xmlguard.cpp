#include "shared/xmlguard.h"

#include <QDir>
#include <QFile>

#include <cctype>
#include <cstring>
#include <tinyxml.h>

namespace Morvex {
namespace {

// Follows the structure of tags as the parser sees it, without building anything. Where the parser
// stops with an error, reading on does no harm: it can only see more levels.
class DepthScanner
{
public:
    explicit DepthScanner(const std::string &xml)
        : m_xml(xml)
    {
    }

    bool exceeds(int maxDepth)
    {
        while (m_depth <= maxDepth) {
            m_position = m_xml.find('<', m_position);
            if (m_position == std::string::npos)
                return false;
            readTag();
        }
        return true;
    }

private:
    bool at(const char *text) const
    {
        return m_xml.compare(m_position, std::strlen(text), text) == 0;
    }

    void skipPast(const char *text)
    {
        const std::size_t found = m_xml.find(text, m_position);
        m_position = found == std::string::npos ? m_xml.size() : found + std::strlen(text);
    }

    void readTag()
    {
        if (at("<!--")) {
            skipPast("-->");
        } else if (at("<![CDATA[")) {
            skipPast("]]>");
        } else if (at("</")) {
            skipPast(">");
            --m_depth;
        } else if (startsName(m_position + 1)) {
            readStartTag();
        } else {
            skipPast(">");
        }
    }

    bool startsName(std::size_t index) const
    {
        if (index >= m_xml.size())
            return false;
        const auto character = static_cast<unsigned char>(m_xml[index]);
        return character >= 127 || std::isalpha(character) || character == '_';
    }

    void readStartTag()
    {
        ++m_depth;
        m_position = m_xml.find_first_of(">\"'", m_position);
        while (m_position != std::string::npos && m_xml[m_position] != '>') {
            const std::size_t closing = m_xml.find(m_xml[m_position], m_position + 1);
            m_position =
                closing == std::string::npos ? closing : m_xml.find_first_of(">\"'", closing + 1);
        }
        if (m_position == std::string::npos)
            m_position = m_xml.size();
        else if (m_xml[m_position - 1] == '/')
            --m_depth;
    }

    const std::string &m_xml;
    std::size_t m_position = 0;
    int m_depth = 0;
};

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
    return DepthScanner(xml).exceeds(maxDepth);
}

QString parseXml(const std::string &xml, TiXmlDocument *document)
{
    const QString error = refusal(xml);
    if (!error.isEmpty())
        return error;
    document->Parse(xml.c_str());
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
