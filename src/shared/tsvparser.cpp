#include "shared/tsvparser.h"

#include "shared/testdata.h"

#include <QTextCodec>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace Morvex {
namespace {

const qint64 chunkSize = 1024 * 1024;
const std::size_t maxLineSize = 1024 * 1024 * 1024;
const std::string_view utf8Mark = "\xef\xbb\xbf";

const char *find(const char *begin, const char *end, char wanted)
{
    const void *found = std::memchr(begin, wanted, static_cast<std::size_t>(end - begin));
    return found ? static_cast<const char *>(found) : end;
}

const char *findEither(const char *begin, const char *end, char a, char b)
{
    return std::find_if(begin, end, [a, b](char c) { return c == a || c == b; });
}

// The next @p wanted outside of quotes. A doubled quote ends the quotes and begins them again.
const char *findOutsideQuotes(const char *begin, const char *end, char wanted, bool *isQuoted)
{
    for (const char *c = begin;; ++c) {
        c = *isQuoted ? find(c, end, '"') : findEither(c, end, wanted, '"');
        if (c == end || *c != '"')
            return c;
        *isQuoted = !*isQuoted;
    }
}

// The texts of a line, one after the other, without the quotes around and within them.
class Fields
{
public:
    Fields(std::string_view line, char separator)
        : m_start(line.data())
        , m_end(line.data() + line.size())
    {
        m_texts.reserve(line.size());
        bool isQuoted = false;
        for (const char *c = m_start; c != m_end;) {
            c = isQuoted ? find(c, m_end, '"') : findEither(c, m_end, separator, '"');
            if (c == m_end)
                break;
            if (*c == separator && !isQuoted) {
                endField(c);
            } else {
                takeQuote(c, isQuoted);
                isQuoted = !isQuoted;
            }
            ++c;
        }
        // A line without any text in its first and only field gives no field.
        append(m_end);
        if (!m_ends.empty() || !m_texts.empty())
            m_ends.push_back(size());
    }

    std::unique_ptr<TestDataRecord> makeRecord(TestDataSet *dataSet, int index) const
    {
        auto record = std::make_unique<TestDataRecord>(dataSet, index);
        record->setValues(m_texts, m_ends);
        return record;
    }

private:
    quint32 size() const { return static_cast<quint32>(m_texts.size()); }

    void append(const char *end)
    {
        m_texts.append(m_start, end);
        m_start = end;
    }

    void endField(const char *separator)
    {
        append(separator);
        ++m_start;
        m_ends.push_back(size());
    }

    // The second one of a doubled quote begins directly after the one that ended the quotes.
    void takeQuote(const char *quote, bool isQuoted)
    {
        append(quote);
        if (isQuoted || quote != m_afterQuotes)
            ++m_start;
        else
            append(quote + 1);
        if (isQuoted)
            m_afterQuotes = m_start;
    }

    const char *m_start;
    const char *const m_end;
    const char *m_afterQuotes = nullptr;
    std::string m_texts;
    std::vector<quint32> m_ends;
};

void addRecord(const TsvParser &parser, TestDataSet *dataSet, std::string_view line, char separator,
               int lineNumber)
{
    auto record = Fields(line, separator).makeRecord(dataSet, lineNumber - 1);
    if (lineNumber == 0) {
        dataSet->setHeader(record.release());
        return;
    }
    const TestDataRecord *header = dataSet->header();
    const int expectedCount = header ? header->count() : 0;
    if (record->count() != expectedCount)
        std::fprintf(
            stderr, "Warning: inconsistent format in %s (line %d): Expected %d fields. Got %d.\n",
            parser.name().toLocal8Bit().constData(), lineNumber, expectedCount, record->count());
    dataSet->addRecord(record.release());
}

} // namespace

TsvParser::TsvParser(const QString &fileName)
{
    open(fileName);
}

TsvParser::~TsvParser() = default;

void TsvParser::open(const QString &fileName)
{
    m_file = std::make_unique<QFile>(fileName);
    m_decoder.reset();
    m_halfCharacter.clear();
    m_buffer.clear();
    m_position = 0;
    m_errorText.clear();
    if (!m_file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        qWarning("Couldn't open %s", fileName.toLocal8Bit().constData());
        m_errorText = m_file->errorString();
        m_file.reset();
        return;
    }
    detectEncoding();
}

void TsvParser::detectEncoding()
{
    fillBuffer();
    const QByteArray start = QByteArray::fromRawData(
        m_buffer.data(), static_cast<int>(std::min<std::size_t>(m_buffer.size(), 4)));
    QTextCodec *codec = QTextCodec::codecForUtfText(start, nullptr);
    if (m_buffer.compare(0, utf8Mark.size(), utf8Mark) == 0) {
        m_position = utf8Mark.size();
    } else if (codec) {
        m_decoder.reset(codec->makeDecoder());
        decodeFrom(0);
    }
}

void TsvParser::decodeFrom(std::size_t position)
{
    const auto size = static_cast<int>(m_buffer.size() - position);
    QString text = m_halfCharacter + m_decoder->toUnicode(m_buffer.data() + position, size);
    const bool isCut = !text.isEmpty() && text.at(text.size() - 1).isHighSurrogate();
    m_halfCharacter = isCut ? text.right(1) : QString();
    text.chop(isCut ? 1 : 0);
    m_buffer.replace(position, m_buffer.npos, text.toStdString());
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
    if (!m_file)
        return;
    open(name());
    m_lineNumber = -1;
}

// Appends to what is not taken yet. False at the end of the file.
bool TsvParser::fillBuffer()
{
    if (!m_file || !m_errorText.isEmpty())
        return false;
    m_buffer.erase(0, m_position);
    m_position = 0;
    const std::size_t oldSize = m_buffer.size();
    m_buffer.resize(oldSize + chunkSize);
    const qint64 size = m_file->read(&m_buffer[oldSize], chunkSize);
    m_buffer.resize(oldSize + static_cast<std::size_t>(std::max<qint64>(size, 0)));
    if (size < 0)
        m_errorText = m_file->errorString();
    if (size > 0 && m_decoder)
        decodeFrom(oldSize);
    return size > 0;
}

// With its quotes and without its line end; valid up to the next one.
std::string_view TsvParser::takeLine()
{
    if (m_position == m_buffer.size() && !fillBuffer())
        return {};
    ++m_lineNumber;
    bool isQuoted = false;
    std::size_t scanned = 0;
    for (;;) {
        const char *const start = m_buffer.data() + m_position;
        const char *const end = m_buffer.data() + m_buffer.size();
        const char *const lineEnd = findOutsideQuotes(start + scanned, end, '\n', &isQuoted);
        scanned = static_cast<std::size_t>(lineEnd - start);
        if (lineEnd != end) {
            m_position += scanned + 1;
            const bool hasReturn = scanned > 0 && lineEnd[-1] == '\r';
            return {start, hasReturn ? scanned - 1 : scanned};
        }
        if (scanned > maxLineSize)
            stop(QStringLiteral("line %1 is longer than 1 GB").arg(m_lineNumber));
        if (!fillBuffer())
            break;
    }
    const std::string_view rest = std::string_view(m_buffer).substr(m_position);
    m_position = m_buffer.size();
    return rest;
}

void TsvParser::stop(const QString &error)
{
    m_errorText = error;
    m_buffer.clear();
    m_position = 0;
}

QString TsvParser::nextLine()
{
    const std::string_view line = takeLine();
    return QString::fromUtf8(line.data(), static_cast<int>(line.size()));
}

int TsvParser::countSeparator(const QString &line, char sep) const
{
    if (line.isEmpty())
        return -1;
    const QByteArray bytes = line.toUtf8();
    const char *const end = bytes.constData() + bytes.size();
    bool isQuoted = false;
    int count = 0;
    const char *c = findOutsideQuotes(bytes.constData(), end, sep, &isQuoted);
    for (; c != end; c = findOutsideQuotes(c + 1, end, sep, &isQuoted))
        ++count;
    return count;
}

void TsvParser::parseRecord(TestDataSet *dataSet, const QString &line, char sep) const
{
    if (line.isEmpty())
        return;
    const QByteArray bytes = line.toUtf8();
    addRecord(*this, dataSet, {bytes.constData(), static_cast<std::size_t>(bytes.size())}, sep,
              m_lineNumber);
}

bool TsvParser::readRecord(TestDataSet *dataSet, char sep)
{
    const std::string_view line = takeLine();
    if (!line.empty())
        addRecord(*this, dataSet, line, sep, m_lineNumber);
    return !line.empty();
}

} // namespace Morvex
