#include "shared/workbook/xmlelementreader.h"

#include "shared/xml/xmlparser.h"

#include <QIODevice>
#include <QTextCodec>

#include <cstdlib>
#include <cstring>
#include <expat.h>
#include <malloc.h>

namespace Morvex {
namespace {

// The parser looks at a tag again with each piece of it.
const int pieceSize = 64 * 1024;

// A cell of a sheet holds 32,767 characters at most.
const int maxTextLength = 512 * 1024;

// Of all parsers of a thread. A parser keeps each name that it meets, so that a document of nothing
// but different names would make it grow without end.
const std::size_t maxHeldBytes = 16 * 1024 * 1024;
thread_local std::size_t heldBytes = 0;

void *reallocate(void *old, std::size_t size)
{
    const std::size_t oldSize = malloc_usable_size(old);
    if (heldBytes - oldSize + size > maxHeldBytes)
        return nullptr;
    void *bytes = std::realloc(old, size);
    if (bytes)
        heldBytes += malloc_usable_size(bytes) - oldSize;
    return bytes;
}

void *allocate(std::size_t size)
{
    return reallocate(nullptr, size);
}

void release(void *bytes)
{
    heldBytes -= malloc_usable_size(bytes);
    std::free(bytes);
}

QString tooMuchMemory()
{
    return QStringLiteral("The names and tags of the document take too much memory.");
}

const XML_Memory_Handling_Suite boundedMemory = {allocate, reallocate, release};

// Encodings of one byte a character, beside those that the parser knows. In others some bytes mean
// nothing alone.
int readEncoding(void *, const XML_Char *name, XML_Encoding *encoding)
{
    QTextCodec *codec = QTextCodec::codecForName(name);
    if (!codec)
        return XML_STATUS_ERROR;
    for (int byte = 0; byte < 256; ++byte) {
        const char text = static_cast<char>(byte);
        QTextCodec::ConverterState state(QTextCodec::ConvertInvalidToNull);
        const QString character = codec->toUnicode(&text, 1, &state);
        if (character.isEmpty())
            return XML_STATUS_ERROR;
        const bool isWhole = character.size() == 1 && state.invalidChars == 0;
        encoding->map[byte] = isWhole ? character.at(0).unicode() : -1;
    }
    return XML_STATUS_OK;
}

} // namespace

struct XmlElementReader::Handlers
{
    static void start(void *self, const XML_Char *name, const XML_Char **attributes)
    {
        auto &reader = *static_cast<XmlElementReader *>(self);
        const char *colon = std::strchr(name, ':');
        reader.append(Event::Start, colon ? colon + 1 : name);
        std::string &bytes = reader.m_bytes;
        bytes += '\0';
        for (; *attributes; ++attributes)
            bytes.append(*attributes, std::strlen(*attributes) + 1);
        reader.m_events.back().end = bytes.size();
        if (++reader.m_depth > maxXmlDepth)
            reader.refuse(QStringLiteral("The elements are nested too deeply."));
    }

    static void end(void *self, const XML_Char *)
    {
        auto &reader = *static_cast<XmlElementReader *>(self);
        --reader.m_depth;
        reader.append(Event::End, {});
    }

    static void text(void *self, const XML_Char *text, int length)
    {
        static_cast<XmlElementReader *>(self)->append(Event::Text,
                                                      {text, static_cast<std::size_t>(length)});
    }

    // Documents of this kind have none, and entities only serve to make them grow.
    static void documentType(void *self, const XML_Char *, const XML_Char *, const XML_Char *, int)
    {
        static_cast<XmlElementReader *>(self)->refuse(
            QStringLiteral("The document has a document type."));
    }
};

XmlElementReader::XmlElementReader(QIODevice *device)
    : m_device(device)
    , m_parser(XML_ParserCreate_MM(nullptr, &boundedMemory, nullptr), XML_ParserFree)
{
    if (!m_parser) {
        fail(tooMuchMemory());
        return;
    }
    XML_SetUserData(m_parser.get(), this);
    XML_SetElementHandler(m_parser.get(), Handlers::start, Handlers::end);
    XML_SetCharacterDataHandler(m_parser.get(), Handlers::text);
    XML_SetStartDoctypeDeclHandler(m_parser.get(), Handlers::documentType);
    XML_SetUnknownEncodingHandler(m_parser.get(), readEncoding, nullptr);
}

XmlElementReader::~XmlElementReader() = default;

bool XmlElementReader::enterChild()
{
    while (const Event *event = next()) {
        if (event->kind != Event::Text)
            return event->kind == Event::Start;
    }
    return false;
}

bool XmlElementReader::enterChild(std::string_view name)
{
    while (enterChild()) {
        if (is(name))
            return true;
        skip();
    }
    return false;
}

bool XmlElementReader::is(std::string_view name) const
{
    return textAt(m_events[m_nextEvent - 1].begin) == name;
}

std::string_view XmlElementReader::attribute(std::string_view name) const
{
    const Event &event = m_events[m_nextEvent - 1];
    std::size_t offset = event.begin + textAt(event.begin).size() + 1;
    while (offset < event.end) {
        const std::string_view key = textAt(offset);
        const std::string_view value = textAt(offset + key.size() + 1);
        if (key == name)
            return value;
        offset += key.size() + value.size() + 2;
    }
    return "";
}

void XmlElementReader::skip()
{
    int depth = 1;
    while (depth > 0) {
        const Event *event = next();
        if (!event)
            return;
        if (event->kind != Event::Text)
            depth += event->kind == Event::Start ? 1 : -1;
    }
}

QString XmlElementReader::takeText()
{
    QString text = QLatin1String("");
    appendText(&text);
    return text;
}

void XmlElementReader::appendText(QString *text)
{
    // The parser does not cut characters.
    for (std::string_view piece; nextPiece(&piece);) {
        const QString part = QString::fromUtf8(piece.data(), static_cast<int>(piece.size()));
        if (text->size() + part.size() > maxTextLength)
            fail(QStringLiteral("A text is too long."));
        else if (text->isEmpty())
            *text = part;
        else
            *text += part;
    }
}

bool XmlElementReader::nextPiece(std::string_view *piece)
{
    while (const Event *event = next()) {
        switch (event->kind) {
        case Event::Start:
            skip();
            break;
        case Event::Text:
            *piece = bytesOf(*event);
            return true;
        case Event::End:
            return false;
        }
    }
    return false;
}

void XmlElementReader::fail(const QString &error)
{
    if (m_error.isEmpty())
        m_error = error;
}

QString XmlElementReader::finish()
{
    while (next()) {
    }
    return m_error;
}

const XmlElementReader::Event *XmlElementReader::next()
{
    while (!hasFailed()) {
        if (m_nextEvent < m_events.size())
            return &m_events[m_nextEvent++];
        if (m_isAtEnd) {
            m_error = m_errorAhead;
            return nullptr;
        }
        m_isAtEnd = !parsePiece();
    }
    return nullptr;
}

// False when it was the last one, or damaged.
bool XmlElementReader::parsePiece()
{
    m_events.clear();
    m_bytes.clear();
    m_nextEvent = 0;
    XML_Parser parser = m_parser.get();
    void *buffer = XML_GetBuffer(parser, pieceSize);
    if (!buffer) {
        m_errorAhead = tooMuchMemory();
        return false;
    }
    const qint64 size = qMax<qint64>(0, m_device->read(static_cast<char *>(buffer), pieceSize));
    const XML_Status status = XML_ParseBuffer(parser, static_cast<int>(size), size == 0);
    if (status == XML_STATUS_ERROR && m_errorAhead.isEmpty())
        m_errorAhead = parserError();
    return size > 0 && status == XML_STATUS_OK;
}

QString XmlElementReader::parserError() const
{
    XML_Parser parser = m_parser.get();
    const XML_Error code = XML_GetErrorCode(parser);
    if (code == XML_ERROR_NO_MEMORY)
        return tooMuchMemory();
    return QStringLiteral("line %1: %2")
        .arg(XML_GetCurrentLineNumber(parser))
        .arg(QLatin1String(XML_ErrorString(code)));
}

std::string_view XmlElementReader::bytesOf(const Event &event) const
{
    return std::string_view(m_bytes).substr(event.begin, event.end - event.begin);
}

void XmlElementReader::append(Event::Kind kind, std::string_view bytes)
{
    const std::size_t begin = m_bytes.size();
    m_bytes += bytes;
    m_events.push_back({kind, begin, m_bytes.size()});
}

void XmlElementReader::refuse(const QString &error)
{
    m_errorAhead = error;
    XML_StopParser(m_parser.get(), XML_FALSE);
}

} // namespace Morvex
