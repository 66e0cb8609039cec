#include "test/child/rawentrystream.h"

#include <QDataStream>
#include <QIODevice>

#include <limits>
#include <string>
#include <utility>

namespace Morvex {
namespace {

// A time is a date, the milliseconds of a day and a kind, which may be followed by a time zone.
const std::size_t timeSize = 8 + 4 + 1;

// A file name without characters and a line number.
const qint64 minFrameSize = 4 + 4;

void write(QDataStream &stream, const LineInfo &line)
{
    stream << line.fileName() << qint32(line.lineNumber());
}

// Reads field by field; from the first one that fails on, values stay as they are.
class FieldReader
{
public:
    explicit FieldReader(const QByteArray &bytes)
        : m_stream(bytes)
    {
    }

    template <typename T>
    void read(T &value)
    {
        if (!isOk())
            return;
        T field{};
        m_stream >> field;
        if (isOk())
            value = std::move(field);
    }

    template <typename Wire>
    void readNumber(int &value)
    {
        Wire number = static_cast<Wire>(value);
        read(number);
        value = number;
    }

    template <typename Enum>
    void readEnumerator(Enum &value, Enum first, Enum last)
    {
        int number = value;
        readNumber<qint8>(number);
        if (number >= first && number <= last)
            value = static_cast<Enum>(number);
    }

    LineInfo readLine()
    {
        QString fileName;
        int lineNumber = -1;
        read(fileName);
        readNumber<qint32>(lineNumber);
        return LineInfo(fileName, lineNumber);
    }

    void readStack(std::vector<LineInfo> &stack)
    {
        int count = 0;
        readNumber<qint32>(count);
        if (count < 0 || count > m_stream.device()->bytesAvailable() / minFrameSize) {
            m_stream.setStatus(QDataStream::ReadCorruptData);
            return;
        }
        stack.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count && isOk(); ++i)
            stack.push_back(readLine());
    }

    void readFile(QFileInfo &file)
    {
        QString path;
        read(path);
        if (!path.isEmpty())
            file = QFileInfo(path);
    }

    // Most times are those of the entry before, and making a local one costs more than all of the
    // other fields.
    void readTime(QDateTime &time, const char *payload, std::size_t size)
    {
        thread_local std::string cachedBytes;
        thread_local QDateTime cachedTime;
        if (size >= timeSize && cachedBytes.compare(0, timeSize, payload, timeSize) == 0) {
            time = cachedTime;
            m_stream.skipRawData(timeSize);
            return;
        }
        if (size >= timeSize && payload[timeSize - 1] == Qt::TimeZone) {
            m_stream.skipRawData(timeSize);
            skipTimeZone();
            return;
        }
        read(time);
        if (!isOk() || time.timeSpec() != Qt::LocalTime)
            return;
        cachedBytes.assign(payload, timeSize);
        cachedTime = time;
    }

private:
    // Its name would be opened as a file, which may be a pipe. No child sends one.
    void skipTimeZone()
    {
        QString text;
        read(text);
        if (text != QLatin1String("OffsetFromUtc"))
            return;
        qint32 number = 0;
        read(text);
        read(number);
        read(text);
        read(text);
        read(number);
        read(text);
    }

    bool isOk() const { return m_stream.status() == QDataStream::Ok; }

    QDataStream m_stream;
};

} // namespace

void encodeEntry(const TestResult::Entry &entry, QByteArray &datagram)
{
    // Keeps the memory of the datagram before.
    datagram.resize(0);
    QDataStream stream(&datagram, QIODevice::WriteOnly);
    stream << quint32(0);
    stream << entry.time << qint8(entry.type) << entry.message << entry.details;
    write(stream, entry.line);
    stream << qint32(entry.stack.size());
    for (const LineInfo &line : entry.stack)
        write(stream, line);
    stream << entry.info << qint32(entry.vpCounter) << entry.name << entry.tableDiff << entry.vpName
           << qint8(entry.vpType) << entry.vpFile.filePath() << entry.summary << entry.description
           << qint32(entry.retry) << qint8(entry.attachmentType) << entry.attachmentUri;
    stream.device()->seek(0);
    stream << quint32(static_cast<std::size_t>(datagram.size()) - rawLengthSize);
}

TestResult::Entry decodeEntry(const char *payload, std::size_t size)
{
    TestResult::Entry entry;
    if (size > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return entry;
    FieldReader reader(QByteArray::fromRawData(payload, static_cast<int>(size)));
    reader.readTime(entry.time, payload, size);
    reader.readEnumerator(entry.type, TestResult::START, TestResult::ENDVIDEOCAPTURE);
    reader.read(entry.message);
    reader.read(entry.details);
    entry.line = reader.readLine();
    reader.readStack(entry.stack);
    reader.read(entry.info);
    reader.readNumber<qint32>(entry.vpCounter);
    reader.read(entry.name);
    reader.read(entry.tableDiff);
    reader.read(entry.vpName);
    reader.readEnumerator(entry.vpType, TestResult::NO_VP, TestResult::VISUAL_VP);
    reader.readFile(entry.vpFile);
    reader.read(entry.summary);
    reader.read(entry.description);
    reader.readNumber<qint32>(entry.retry);
    reader.readEnumerator(entry.attachmentType, TestResult::UICOVERAGE_ATTACHMENT,
                          TestResult::SCREENSHOT_ATTACHMENT);
    reader.read(entry.attachmentUri);
    return entry;
}

} // namespace Morvex
