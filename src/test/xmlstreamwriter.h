#pragma once

#include "morvex_export.h"

#include <QString>

#include <deque>
#include <ostream>
#include <string>

namespace Morvex {

/// A text that leaves a stream with the characters of markup escaped. Controls that XML forbids are
/// dropped, each with a line on standard error; all bytes from 0x80 on pass.
class MORVEX_EXPORT XmlEscapeString
{
public:
    /// Keeps a reference to @p text. In an attribute, tabs and line ends become references too:
    /// a reader would take them for blanks.
    explicit XmlEscapeString(const std::string &text, bool attribute = false)
        : m_text(text)
        , m_attribute(attribute)
    {
    }

    MORVEX_EXPORT friend std::ostream &operator<<(std::ostream &stream,
                                                  const XmlEscapeString &string);

private:
    const std::string &m_text;
    bool m_attribute;
};

/// Writes XML as it goes and holds nothing but the names of the open elements. Names and values are
/// UTF-8. The caller keeps the order: attributes come right after the start of their element.
class MORVEX_EXPORT XmlStreamWriter
{
public:
    /// Keeps a reference to @p stream.
    explicit XmlStreamWriter(std::ostream &stream);

    XmlStreamWriter(const XmlStreamWriter &) = delete;
    XmlStreamWriter &operator=(const XmlStreamWriter &) = delete;

    /// Puts each element on a line of its own and flushes the stream after each line; off at first.
    void setAutoFormatting(bool enabled) { m_autoFormatting = enabled; }

    void writeStartDocument();
    /// Closes all elements that are still open.
    void writeEndDocument();

    void writeStartElement(const std::string &name);
    void writeEndElement();
    void writeAttribute(const std::string &name, const std::string &value);
    void writeIntAttribute(const std::string &name, int value);
    void writeCharacters(const std::string &text);
    /// Splits "]]>" over two sections. An empty text writes nothing.
    void writeCData(const std::string &text);

    void writeTextElement(const std::string &name, const std::string &text);
    void writeCDataElement(const std::string &name, const std::string &text);

private:
    enum State { Initial, InStartTag, AfterEndTag, AfterText };

    void closeStartTag();
    void endLine();
    void writeIndent();
    void writePending();
    void flush();

    std::ostream &m_stream;
    std::deque<std::string> m_elements;
    State m_state = Initial;
    bool m_autoFormatting = false;
    // Empty between two calls. A member, since its memory serves all of them.
    std::string m_pending;
};

/// The same for texts of the log, of which XML can't take each character.
class MORVEX_EXPORT XmlStreamWriterQString : public XmlStreamWriter
{
public:
    using XmlStreamWriter::XmlStreamWriter;

    void writeAttributeQString(const std::string &name, const QString &value);
    void writeCDataElementQString(const std::string &name, const QString &text);
};

} // namespace Morvex
