#include "shared/tsvparser.h"

#include "shared/testdata.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace Morvex {
namespace {

const int chunkLength = 64 * 1024;

// Follows the quotes through a text. A quote inside of quotes ends them, unless the next character
// is one as well.
class QuoteTracker
{
public:
    enum Place { Outside, Inside, OpeningQuote, ClosingQuote, SecondOfDoubledQuote };

    Place next(QChar character)
    {
        if (character != QLatin1Char('"')) {
            if (m_state == QuoteSeen)
                m_state = NoQuotes;
            return m_state == NoQuotes ? Outside : Inside;
        }
        switch (m_state) {
        case NoQuotes:
            m_state = InQuotes;
            return OpeningQuote;
        case InQuotes:
            m_state = QuoteSeen;
            return ClosingQuote;
        case QuoteSeen:
            break;
        }
        m_state = InQuotes;
        return SecondOfDoubledQuote;
    }

private:
    enum { NoQuotes, InQuotes, QuoteSeen } m_state = NoQuotes;
};

// A field of a line: pieces of the line without the quotes around and between them.
class FieldText
{
public:
    void append(const QChar *begin, const QChar *end)
    {
        const int length = static_cast<int>(end - begin);
        if (length == 0)
            return;
        // The usual field is one piece, which then takes no more memory than it needs.
        if (m_text.isEmpty()) {
            m_text = QString(begin, length);
        } else {
            m_text.append(begin, length);
            m_isPatchwork = true;
        }
    }

    QString take()
    {
        if (m_isPatchwork)
            m_text.squeeze();
        m_isPatchwork = false;
        return std::exchange(m_text, QLatin1String(""));
    }

private:
    QString m_text = QLatin1String("");
    bool m_isPatchwork = false;
};

// A line without any text in its first and only field gives no field.
void addFields(TestDataRecord &record, const QString &line, char sep)
{
    const QLatin1Char separator(sep);
    QuoteTracker tracker;
    FieldText field;
    const QChar *start = line.constData();
    const QChar *const end = start + line.size();
    for (const QChar *c = start; c != end; ++c) {
        switch (tracker.next(*c)) {
        case QuoteTracker::Inside:
            break;
        case QuoteTracker::Outside:
            if (*c != separator)
                break;
            field.append(start, c);
            record.addValue(field.take());
            start = c + 1;
            break;
        case QuoteTracker::OpeningQuote:
        case QuoteTracker::ClosingQuote:
            field.append(start, c);
            start = c + 1;
            break;
        case QuoteTracker::SecondOfDoubledQuote:
            start = c;
            break;
        }
    }
    field.append(start, end);
    const QString last = field.take();
    if (record.count() > 0 || !last.isEmpty())
        record.addValue(last);
}

} // namespace

TsvParser::TsvParser(const QString &fileName)
{
    open(fileName);
}

TsvParser::~TsvParser() = default;

void TsvParser::open(const QString &fileName)
{
    m_stream.reset();
    m_file = std::make_unique<QFile>(fileName);
    m_buffer.clear();
    m_position = 0;
    m_errorText.clear();
    if (!m_file->open(QIODevice::ReadOnly)) {
        qWarning("Couldn't open %s", fileName.toLocal8Bit().constData());
        m_errorText = m_file->errorString();
        m_file.reset();
        return;
    }
    m_stream = std::make_unique<QTextStream>(m_file.get());
    m_stream->setCodec("UTF-8");
}

QString TsvParser::name() const
{
    return m_file ? m_file->fileName() : QString();
}

QString TsvParser::errorText() const
{
    return m_errorText;
}

void TsvParser::rewind()
{
    if (!m_stream)
        return;
    open(name());
    m_lineNumber = -1;
}

// False at the end of the file.
bool TsvParser::fillBuffer()
{
    if (m_position < m_buffer.size())
        return true;
    m_position = 0;
    m_buffer = m_stream ? m_stream->read(chunkLength) : QString();
    if (m_file && m_file->error() != QFile::NoError)
        m_errorText = m_file->errorString();
    return !m_buffer.isEmpty();
}

QString TsvParser::nextLine()
{
    QString line;
    if (!fillBuffer())
        return line;
    ++m_lineNumber;
    QuoteTracker tracker;
    do {
        const QChar *const start = m_buffer.constData() + m_position;
        const QChar *const bufferEnd = m_buffer.constData() + m_buffer.size();
        const QChar *const lineEnd = std::find_if(start, bufferEnd, [&tracker](QChar character) {
            return tracker.next(character) == QuoteTracker::Outside &&
                   character == QLatin1Char('\n');
        });
        const int length = static_cast<int>(lineEnd - start);
        line.append(start, length);
        m_position += length;
        if (lineEnd != bufferEnd) {
            ++m_position;
            if (line.endsWith(QLatin1Char('\r')))
                line.chop(1);
            return line;
        }
    } while (fillBuffer());
    return line;
}

int TsvParser::countSeparator(const QString &line, char sep) const
{
    if (line.isEmpty())
        return -1;
    const QLatin1Char separator(sep);
    QuoteTracker tracker;
    return static_cast<int>(
        std::count_if(line.begin(), line.end(), [&tracker, separator](QChar character) {
            return tracker.next(character) == QuoteTracker::Outside && character == separator;
        }));
}

void TsvParser::parseRecord(TestDataSet *dataSet, const QString &line, char sep) const
{
    if (line.isEmpty())
        return;
    const TestDataRecord *header = dataSet->header();
    const int expectedCount = header ? header->count() : 0;
    auto record = std::make_unique<TestDataRecord>(dataSet, m_lineNumber - 1);
    record->reserve(std::min(expectedCount, line.size() + 1));
    addFields(*record, line, sep);
    if (m_lineNumber == 0) {
        dataSet->setHeader(record.release());
        return;
    }
    if (record->count() != expectedCount)
        std::fprintf(
            stderr, "Warning: inconsistent format in %s (line %d): Expected %d fields. Got %d.\n",
            name().toLocal8Bit().constData(), m_lineNumber, expectedCount, record->count());
    dataSet->addRecord(record.release());
}

} // namespace Morvex
