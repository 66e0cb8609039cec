#include "message.h"

#include <cstring>
#include <limits>

namespace {

const int minFrameSize = 6;
const int minTextSize = 3;
const int maxDigits = 18;

int toInt(qint64 number)
{
    return static_cast<int>(
        qBound<qint64>(std::numeric_limits<int>::min(), number, std::numeric_limits<int>::max()));
}

Place readPlace(MessageReader &reader)
{
    Place place;
    place.uri = reader.text();
    place.line = toInt(reader.number());
    return place;
}

} // namespace

void MessageReader::skipSeparator()
{
    if (m_position == 0)
        return;
    m_isOk = m_isOk && m_position < m_message.size() && m_message.at(m_position) == '|';
    ++m_position;
}

qint64 MessageReader::number()
{
    skipSeparator();
    const int start = m_position;
    while (m_isOk && m_position < m_message.size() && m_position - start <= maxDigits &&
           std::strchr("-0123456789", m_message.at(m_position)) && m_message.at(m_position) != '\0')
        ++m_position;
    bool isNumber = false;
    const qint64 value =
        m_isOk ? m_message.mid(start, m_position - start).toLongLong(&isNumber) : 0;
    m_isOk = m_isOk && isNumber;
    return m_isOk ? value : 0;
}

// Of things that have this many bytes at least: a number that the message can't hold is none.
int MessageReader::count(int bytesEach)
{
    const qint64 value = number();
    m_isOk = m_isOk && value >= 0 && value <= (m_message.size() - m_position) / bytesEach;
    return m_isOk ? static_cast<int>(value) : 0;
}

QByteArray MessageReader::bytes()
{
    const int size = count(1);
    skipSeparator();
    m_isOk = m_isOk && size <= m_message.size() - m_position;
    if (!m_isOk)
        return {};
    m_position += size;
    return m_message.mid(m_position - size, size);
}

QString MessageReader::text()
{
    const QByteArray utf8 = bytes();
    return QString::fromUtf8(utf8.constData(), utf8.size());
}

bool MessageReader::isAtEnd(const char *end) const
{
    return m_isOk && m_message.mid(m_position) == end;
}

std::optional<SessionMessage> readSession(MessageReader &reader)
{
    SessionMessage session;
    session.project = reader.text();
    session.token = reader.text();
    const int labels = reader.count(minTextSize);
    for (int i = 0; i < labels && reader.isOk(); ++i)
        session.labels += reader.text();
    session.batch = reader.text();
    return reader.isAtEnd("\n") ? std::optional(session) : std::nullopt;
}

std::optional<EntryMessage> readEntry(MessageReader &reader)
{
    EntryMessage entry;
    entry.time = reader.number();
    entry.type = Morvex::TestResult::stringToResult(reader.text());
    entry.name = reader.text();
    entry.script = readPlace(reader);
    entry.summary = reader.text();
    entry.message = reader.text();
    entry.details = reader.text();
    entry.info = reader.text();
    const int frames = reader.count(minFrameSize);
    for (int i = 0; i < frames && reader.isOk(); ++i)
        entry.stack.push_back(readPlace(reader));
    entry.kind = reader.text();
    entry.location = readPlace(reader);
    entry.resource = reader.text();
    entry.screenshot = reader.text();
    entry.retry = toInt(reader.number());
    const bool isEntry = reader.isAtEnd("\n") && entry.type != Morvex::TestResult::NONE;
    return isEntry ? std::optional(entry) : std::nullopt;
}
