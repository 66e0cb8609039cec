#include "test/xmlstreamwriter.h"

#include "test/output/reporttext.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iostream>

namespace Morvex {
namespace {

const int indentWidth = 4;

bool isIllegal(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

// In one piece: a text may hold many, and the stream has no buffer.
void warnOfIllegal(char byte, const char *place)
{
    std::cerr << "Warning: illegal character " + std::to_string(byte) + " in XML " + place + '\n';
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

bool isSpecialInCData(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20 || byte == terminator[0];
}

// Texts are mostly plain: looks at eight bytes at once. A byte is below n when taking n from it
// borrows; a byte that the byte before it borrows from may look special without being so.
const char *findSpecialInCData(const char *position, const char *end)
{
    const std::uint64_t everyByte = 0x0101010101010101;
    const auto hasBelow = [](std::uint64_t word, std::uint64_t n) {
        return ((word - everyByte * n) & ~word & everyByte * 0x80) != 0;
    };
    for (std::uint64_t word = 0; end - position >= std::ptrdiff_t(sizeof word);
         position += sizeof word) {
        std::memcpy(&word, position, sizeof word);
        if (hasBelow(word, 0x20) || hasBelow(word ^ everyByte * ']', 1))
            break;
    }
    return std::find_if(position, end, isSpecialInCData);
}

// Holds back what may become the terminator until the byte after it is known.
void appendCData(std::string &out, const std::string &text)
{
    std::size_t matched = 0;
    const char *const end = text.data() + text.size();
    for (const char *position = text.data(); position != end;) {
        if (matched == 0) {
            const char *const plainEnd = findSpecialInCData(position, end);
            out.append(position, static_cast<std::size_t>(plainEnd - position));
            position = plainEnd;
            if (position == end)
                break;
        }
        const char byte = *position++;
        if (isIllegal(byte)) {
            warnOfIllegal(byte, "CData");
        } else if (byte == terminator[matched]) {
            if (++matched < terminatorSize)
                continue;
            out += "]]]]><![CDATA[>";
            matched = 0;
        } else {
            if (matched > 0 && byte != ']') {
                out.append(terminator, matched);
                matched = 0;
            }
            out += byte;
        }
    }
    out.append(terminator, matched);
}

// Markup, and what an attribute can't hold as it is.
bool isSpecialInText(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20 || byte == '&' || byte == '<' || byte == '>' ||
           byte == '"' || byte == '\'';
}

void appendEscaped(std::string &out, const std::string &text, bool attribute)
{
    const char *const end = text.data() + text.size();
    for (const char *position = text.data(); position != end;) {
        const char *const plainEnd = std::find_if(position, end, isSpecialInText);
        out.append(position, static_cast<std::size_t>(plainEnd - position));
        if (plainEnd == end)
            return;
        if (isIllegal(*plainEnd))
            warnOfIllegal(*plainEnd, "string");
        else if (const char *escape = escapeOf(*plainEnd, attribute))
            out += escape;
        else
            out += *plainEnd;
        position = plainEnd + 1;
    }
}

} // namespace

std::ostream &operator<<(std::ostream &stream, const XmlEscapeString &string)
{
    std::string escaped;
    appendEscaped(escaped, string.m_text, string.m_attribute);
    return stream.write(escaped.data(), static_cast<std::streamsize>(escaped.size()));
}

XmlStreamWriter::XmlStreamWriter(std::ostream &stream)
    : m_stream(stream)
{
}

void XmlStreamWriter::writeStartDocument()
{
    m_pending += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    writePending();
    flush();
}

void XmlStreamWriter::writeEndDocument()
{
    while (!m_elements.empty())
        writeEndElement();
}

void XmlStreamWriter::writeStartElement(const std::string &name)
{
    if (m_state == InStartTag) {
        m_pending += '>';
        endLine();
    }
    m_state = InStartTag;
    writeIndent();
    m_pending += '<';
    appendEscaped(m_pending, name, true);
    m_elements.push_back(name);
    writePending();
}

void XmlStreamWriter::writeEndElement()
{
    if (m_elements.empty())
        return;
    const std::string name = std::move(m_elements.back());
    m_elements.pop_back();
    if (m_state == InStartTag) {
        m_pending += "/>";
    } else {
        if (m_state == AfterEndTag)
            writeIndent();
        m_pending += "</";
        appendEscaped(m_pending, name, true);
        m_pending += '>';
    }
    m_state = m_elements.empty() ? Initial : AfterEndTag;
    endLine();
}

void XmlStreamWriter::writeAttribute(const std::string &name, const std::string &value)
{
    m_pending += ' ';
    appendEscaped(m_pending, name, true);
    m_pending += "=\"";
    appendEscaped(m_pending, value, true);
    m_pending += '"';
    writePending();
}

void XmlStreamWriter::writeIntAttribute(const std::string &name, int value)
{
    writeAttribute(name, std::to_string(value));
}

void XmlStreamWriter::writeCharacters(const std::string &text)
{
    closeStartTag();
    appendEscaped(m_pending, text, false);
    writePending();
}

void XmlStreamWriter::writeCData(const std::string &text)
{
    if (text.empty())
        return;
    closeStartTag();
    m_pending += "<![CDATA[";
    appendCData(m_pending, text);
    m_pending += "]]>";
    writePending();
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
        m_pending += '>';
    m_state = AfterText;
}

// The flush is what a report keeps after a crash.
void XmlStreamWriter::endLine()
{
    if (m_autoFormatting)
        m_pending += '\n';
    writePending();
    if (m_autoFormatting)
        flush();
}

void XmlStreamWriter::writeIndent()
{
    if (m_autoFormatting)
        m_pending.append(m_elements.size() * indentWidth, ' ');
}

// As std::ostream::write does it, without what that prepares and ends around each line.
void XmlStreamWriter::writePending()
{
    const auto size = static_cast<std::streamsize>(m_pending.size());
    if (m_stream.good() && m_stream.rdbuf()->sputn(m_pending.data(), size) != size)
        m_stream.setstate(std::ios::badbit);
    m_pending.clear();
}

void XmlStreamWriter::flush()
{
    if (m_stream.good() && m_stream.rdbuf()->pubsync() != 0)
        m_stream.setstate(std::ios::badbit);
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
