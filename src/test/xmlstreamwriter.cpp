#include "test/xmlstreamwriter.h"

#include "test/reporttext.h"

#include <iostream>

namespace Morvex {
namespace {

const int indentWidth = 4;

bool isIllegal(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

void warnOfIllegal(char byte, const char *place)
{
    std::cerr << "Warning: illegal character " << static_cast<int>(byte) << " in XML " << place
              << '\n';
}

void write(std::ostream &stream, const std::string &text)
{
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

const char *escapeOf(char byte, bool attribute)
{
    switch (byte) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&apos;";
    case '\t':
        return attribute ? "&#9;" : nullptr;
    case '\n':
        return attribute ? "&#10;" : nullptr;
    case '\r':
        return attribute ? "&#13;" : nullptr;
    default:
        return nullptr;
    }
}

const char terminator[] = "]]>";
const std::size_t terminatorSize = 3;

// Holds back what may become the terminator until the byte behind it is known.
std::string cdataContent(const std::string &text)
{
    std::string content;
    content.reserve(text.size());
    std::size_t matched = 0;
    for (const char byte : text) {
        if (isIllegal(byte)) {
            warnOfIllegal(byte, "CData");
        } else if (byte == terminator[matched]) {
            if (++matched < terminatorSize)
                continue;
            content += "]]]]><![CDATA[>";
            matched = 0;
        } else {
            if (matched > 0 && byte != ']') {
                content.append(terminator, matched);
                matched = 0;
            }
            content += byte;
        }
    }
    return content.append(terminator, matched);
}

} // namespace

std::ostream &operator<<(std::ostream &stream, const XmlEscapeString &string)
{
    std::string escaped;
    escaped.reserve(string.m_text.size());
    for (const char byte : string.m_text) {
        if (isIllegal(byte))
            warnOfIllegal(byte, "string");
        else if (const char *escape = escapeOf(byte, string.m_attribute))
            escaped += escape;
        else
            escaped += byte;
    }
    write(stream, escaped);
    return stream;
}

XmlStreamWriter::XmlStreamWriter(std::ostream &stream)
    : m_stream(stream)
{
}

void XmlStreamWriter::writeStartDocument()
{
    m_stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" << std::flush;
}

void XmlStreamWriter::writeEndDocument()
{
    while (!m_elements.empty())
        writeEndElement();
}

void XmlStreamWriter::writeStartElement(const std::string &name)
{
    if (m_state == InStartTag) {
        m_stream << '>';
        endLine();
    }
    m_state = InStartTag;
    writeIndent();
    m_stream << '<' << XmlEscapeString(name, true);
    m_elements.push_back(name);
}

void XmlStreamWriter::writeEndElement()
{
    if (m_elements.empty())
        return;
    const std::string name = std::move(m_elements.back());
    m_elements.pop_back();
    if (m_state == InStartTag) {
        m_stream << "/>";
    } else {
        if (m_state == BehindEndTag)
            writeIndent();
        m_stream << "</" << XmlEscapeString(name, true) << '>';
    }
    m_state = m_elements.empty() ? Initial : BehindEndTag;
    endLine();
}

void XmlStreamWriter::writeAttribute(const std::string &name, const std::string &value)
{
    m_stream << ' ' << XmlEscapeString(name, true) << "=\"" << XmlEscapeString(value, true) << '"';
}

void XmlStreamWriter::writeIntAttribute(const std::string &name, int value)
{
    writeAttribute(name, std::to_string(value));
}

void XmlStreamWriter::writeCharacters(const std::string &text)
{
    closeStartTag();
    m_stream << XmlEscapeString(text);
}

void XmlStreamWriter::writeCData(const std::string &text)
{
    if (text.empty())
        return;
    closeStartTag();
    m_stream << "<![CDATA[";
    write(m_stream, cdataContent(text));
    m_stream << "]]>";
}

void XmlStreamWriter::writeTextElement(const std::string &name, const std::string &text)
{
    writeStartElement(name);
    if (!text.empty())
        writeCharacters(text);
    writeEndElement();
}

void XmlStreamWriter::writeCDataElement(const std::string &name, const std::string &text)
{
    writeStartElement(name);
    writeCData(text);
    writeEndElement();
}

void XmlStreamWriter::closeStartTag()
{
    if (m_state == InStartTag)
        m_stream << '>';
    m_state = BehindText;
}

// The flush is what a report keeps after a crash.
void XmlStreamWriter::endLine()
{
    if (m_autoFormatting)
        m_stream << '\n' << std::flush;
}

void XmlStreamWriter::writeIndent()
{
    if (m_autoFormatting)
        write(m_stream, std::string(m_elements.size() * indentWidth, ' '));
}

void XmlStreamWriterQString::writeAttributeQString(const std::string &name, const QString &value)
{
    writeAttribute(name, reportUtf8(value));
}

void XmlStreamWriterQString::writeCDataElementQString(const std::string &name, const QString &text)
{
    writeCDataElement(name, reportUtf8(text));
}

} // namespace Morvex
