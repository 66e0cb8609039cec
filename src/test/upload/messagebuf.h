#pragma once

#include <QByteArray>

#include <ios>
#include <ostream>
#include <sstream>

namespace Morvex {

/// One message to the server. A stream is put on it for its fields.
class MessageBuf : public std::stringbuf
{
public:
    MessageBuf()
        : std::stringbuf(std::ios::out | std::ios::binary)
    {
    }

    /// Valid until the message changes.
    QByteArray bytes() const
    {
        return QByteArray::fromRawData(pbase(), static_cast<int>(pptr() - pbase()));
    }
};

/// Inserts a text as the protocol has it: its number of bytes, "|" and the bytes up to the first
/// NUL.
class WriteString
{
public:
    explicit WriteString(const QByteArray &text)
        : m_text(text)
    {
    }

    friend std::ostream &operator<<(std::ostream &stream, const WriteString &string)
    {
        return stream << string.m_text.size() << '|' << string.m_text.constData();
    }

private:
    QByteArray m_text;
};

} // namespace Morvex
