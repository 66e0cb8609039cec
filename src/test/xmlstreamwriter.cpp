#include "test/xmlstreamwriter.h"

#include "test/output/reporttext.h"

#include <algorithm>
#include <array>
#include <iostream>

namespace Morvex {
namespace {

const int indentWidth = 4;

// What the texts of a report are mostly made of takes one look-up a byte.
enum ByteClass : unsigned char {
    Plain,
    Illegal,
    /// Markup, or what an attribute can't hold as it stands.
    ToEscape,
    BeginsTerminator
};

constexpr std::array<ByteClass, 256> makeByteClasses()
{
    std::array<ByteClass, 256> classes{};
    for (unsigned code = 0; code < 0x20; ++code)
        classes[code] = Illegal;
    for (const unsigned char code : {'\t', '\n', '\r', '&', '<', '>', '"', '\''})
        classes[code] = ToEscape;
    classes[']'] = BeginsTerminator;
    return classes;
}

constexpr std::array<ByteClass, 256> byteClasses = makeByteClasses();

ByteClass classOf(char byte)
{
    return byteClasses[static_cast<unsigned char>(byte)];
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

bool isPlainCData(char byte)
{
    return classOf(byte) != Illegal && byte != terminator[0];
}

// Holds back what may become the terminator until the byte after it is known.
void appendCData(std::string &out, const std::string &text)
{
    std::size_t matched = 0;
    for (auto position = text.begin(); position != text.end();) {
        if (matched == 0) {
            const auto plainEnd = std::find_if_not(position, text.end(), isPlainCData);
            out.append(position, plainEnd);
            position = plainEnd;
            if (position == text.end())
                break;
        }
        const char byte = *position++;
        if (classOf(byte) == Illegal) {
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

bool isPlain(char byte)
{
    return classOf(byte) == Plain || classOf(byte) == BeginsTerminator;
}

void appendEscaped(std::string &out, const std::string &text, bool attribute)
{
    const auto end = text.end();
    for (auto position = text.begin(); position != end;) {
        const auto plainEnd = std::find_if_not(position, end, isPlain);
        out.append(position, plainEnd);
        if (plainEnd == end)
            return;
        if (classOf(*plainEnd) == Illegal)
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

XmlStreamWriter::~XmlStreamWriter()
{
    writePending();
}

void XmlStreamWriter::writeStartDocument()
{
    m_pending += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    writePending();
    m_stream.flush();
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
    endPiece();
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
    endPiece();
}

void XmlStreamWriter::writeIntAttribute(const std::string &name, int value)
{
    writeAttribute(name, std::to_string(value));
}

void XmlStreamWriter::writeCharacters(const std::string &text)
{
    closeStartTag();
    appendEscaped(m_pending, text, false);
    endPiece();
}

void XmlStreamWriter::writeCData(const std::string &text)
{
    if (text.empty())
        return;
    closeStartTag();
    m_pending += "<![CDATA[";
    appendCData(m_pending, text);
    m_pending += "]]>";
    endPiece();
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
        m_stream.flush();
}

void XmlStreamWriter::writeIndent()
{
    if (m_autoFormatting)
        m_pending.append(m_elements.size() * indentWidth, ' ');
}

void XmlStreamWriter::endPiece()
{
    if (!m_autoFormatting)
        writePending();
}

void XmlStreamWriter::writePending()
{
    m_stream.write(m_pending.data(), static_cast<std::streamsize>(m_pending.size()));
    m_pending.clear();
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
