#pragma once

#include <QString>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class QIODevice;
struct XML_ParserStruct;

namespace Morvex {

/// Moves through the elements of an XML document from outside, which is never in memory as a whole.
/// Elements go by their names without a prefix. After an error there are no more of them. What the
/// parser holds is bounded, elements are at most maxXmlDepth deep, and a document type is an error.
/// A reader is made, used and destroyed in one thread, by which the bound counts.
class XmlElementReader
{
public:
    /// The device must outlive the reader.
    explicit XmlElementReader(QIODevice *device);
    ~XmlElementReader();

    XmlElementReader(const XmlElementReader &) = delete;
    XmlElementReader &operator=(const XmlElementReader &) = delete;

    /// False when the document has another root, which is skipped then.
    bool enterRoot(std::string_view name) { return enterChild(name); }
    /// The next child of the current element, which becomes the current one. Without another child
    /// the parent is left.
    bool enterChild();
    /// The same for the next child of that name; those before it are skipped.
    bool enterChild(std::string_view name);

    // Of the element that was entered last, until the reader moves on.

    bool is(std::string_view name) const;
    /// Of an attribute by its full name; empty when there is none.
    std::string_view attribute(std::string_view name) const;

    /// Leaves the current element.
    void skip();
    /// The text in the current element, which is left, without that of its children. Never null.
    QString takeText();
    /// Appends it to @p text. More than half a million characters, with those that were there, are
    /// an error.
    void appendText(QString *text);
    /// The same in pieces of UTF-8, each valid up to the next call. False when there are no more
    /// and the element is left.
    bool nextPiece(std::string_view *piece);

    /// Ends the reading. The first failure counts.
    void fail(const QString &error);
    bool hasFailed() const { return !m_error.isEmpty(); }
    /// Reads what is after the root. Returns an error text, empty on success.
    [[nodiscard]] QString finish();

private:
    // What the parser found in a piece of the document, in the order of the document. A start has
    // the name, and then name and value of each attribute, with a zero byte after each.
    struct Event
    {
        enum Kind { Start, Text, End } kind;
        std::size_t begin;
        std::size_t end;
    };

    struct Handlers;

    const Event *next();
    bool parsePiece();
    QString parserError() const;
    std::string_view bytesOf(const Event &event) const;
    std::string_view textAt(std::size_t offset) const { return m_bytes.c_str() + offset; }
    void append(Event::Kind kind, std::string_view bytes);
    void refuse(const QString &error);

    QIODevice *const m_device;
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_ParserStruct *)> m_parser;
    std::vector<Event> m_events;
    std::string m_bytes;
    std::size_t m_nextEvent = 0;
    int m_depth = 0;
    bool m_isAtEnd = false;
    // What the parser met after the events, and what ended the reading.
    QString m_errorAhead;
    QString m_error;
};

} // namespace Morvex
