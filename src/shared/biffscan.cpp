#include "shared/biffscan.h"

#include <QTextCodec>
#include <QtEndian>

#include <cstring>

namespace Morvex {
namespace {

enum RecordType {
    FormulaRecord = 0x0006,
    EofRecord = 0x000a,
    FilePassRecord = 0x002f,
    ContinueRecord = 0x003c,
    CodePageRecord = 0x0042,
    BoundSheetRecord = 0x0085,
    MultipleRkRecord = 0x00bd,
    RichStringRecord = 0x00d6,
    NumberRecord = 0x0203,
    BooleanOrErrorRecord = 0x0205,
    StringRecord = 0x0207,
    RkRecord = 0x027e,
    BofRecord = 0x0809,
};

// One record. Reading beyond its end gives 0.
class Record
{
public:
    Record(int type, const QByteArray &content)
        : m_type(type)
        , m_content(content)
    {
    }

    int type() const { return m_type; }
    int size() const { return m_content.size(); }
    quint8 byte(int offset) const { return number<quint8>(offset); }
    quint16 word(int offset) const { return number<quint16>(offset); }
    quint32 doubleWord(int offset) const { return number<quint32>(offset); }

    double real(int offset) const
    {
        const auto bits = number<quint64>(offset);
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    QByteArray from(int offset) const { return m_content.mid(offset); }
    // Cell records begin with their place.
    quint32 place() const { return BiffScan::place(word(0), word(2)); }

private:
    template <typename Number>
    Number number(int offset) const
    {
        if (offset + int(sizeof(Number)) > m_content.size())
            return 0;
        return qFromLittleEndian<Number>(m_content.constData() + offset);
    }

    int m_type;
    QByteArray m_content;
};

// The records from a place on up to the end of the stream part that begins there. Parts of embedded
// objects within it are passed over.
class RecordWalk
{
public:
    RecordWalk(const QByteArray &stream, quint32 offset)
        : m_stream(stream)
        , m_offset(offset)
    {
    }

    bool next(Record *record)
    {
        do {
            if (!read(record))
                return false;
            if (record->type() == BofRecord)
                ++m_depth;
            else if (record->type() == EofRecord)
                --m_depth;
        } while (m_depth > 1);
        return m_depth > 0;
    }

private:
    bool read(Record *record)
    {
        const int headerSize = 4;
        if (m_offset + headerSize > m_stream.size())
            return false;
        const char *header = m_stream.constData() + m_offset;
        const auto size = qFromLittleEndian<quint16>(header + 2);
        if (m_offset + headerSize + size > m_stream.size())
            return false;
        *record = Record(qFromLittleEndian<quint16>(header),
                         QByteArray::fromRawData(header + headerSize, size));
        m_offset += headerSize + size;
        return true;
    }

    const QByteArray m_stream;
    qint64 m_offset;
    int m_depth = 0;
};

XlsCell numberCell(XlsCell::Type type, double number)
{
    return {type, QString(), number};
}

XlsCell booleanOrError(quint8 value, bool isError)
{
    return numberCell(isError ? XlsCell::Error : XlsCell::Boolean, value);
}

// A number in 30 bits: a whole one or the upper part of a real one, perhaps times 100.
XlsCell decodeRk(quint32 rk)
{
    const bool isHundredfold = rk & 1;
    const bool isWhole = rk & 2;
    double value = 0;
    if (isWhole) {
        value = static_cast<qint32>(rk) >> 2;
    } else {
        const quint64 bits = quint64(rk & ~3u) << 32;
        std::memcpy(&value, &bits, sizeof value);
    }
    if (isHundredfold)
        value /= 100;
    return numberCell(isWhole && !isHundredfold ? XlsCell::Integer : XlsCell::Float, value);
}

// Texts are in 16 bit units or in their lower halves, which a flag in front of each piece tells;
// versions without the flag have bytes of the code page.
class StringContent
{
public:
    explicit StringContent(QTextCodec *codec)
        : m_codec(codec)
    {
    }

    void begin(const Record &record, int offset)
    {
        m_left = record.word(offset);
        append(record.from(offset + 2));
    }

    void append(const QByteArray &piece)
    {
        if (m_codec) {
            m_text += m_codec->toUnicode(piece.left(m_left));
            m_left -= qMin(m_left, piece.size());
            return;
        }
        const bool isWide = !piece.isEmpty() && (piece.at(0) & 1);
        const int unit = isWide ? 2 : 1;
        const int length = qMin(m_left, (piece.size() - 1) / unit);
        for (int i = 0; i < length; ++i) {
            const char *character = piece.constData() + 1 + i * unit;
            m_text += isWide ? QChar(qFromLittleEndian<quint16>(character))
                             : QChar(QLatin1Char(*character));
        }
        m_left -= qMax(length, 0);
    }

    const QString &text() const { return m_text; }

private:
    QTextCodec *m_codec;
    QString m_text;
    int m_left = 0;
};

// Collects the cells of one sheet.
class CellCollector
{
public:
    explicit CellCollector(QTextCodec *codec)
        : m_codec(codec)
    {
    }

    void take(const Record &record)
    {
        const int valueOffset = 6;
        switch (record.type()) {
        case NumberRecord:
            m_cells.insert(record.place(), numberCell(XlsCell::Float, record.real(valueOffset)));
            break;
        case RkRecord:
            m_cells.insert(record.place(), decodeRk(record.doubleWord(valueOffset)));
            break;
        case MultipleRkRecord:
            takeMultiple(record);
            break;
        case BooleanOrErrorRecord:
            m_cells.insert(record.place(), booleanOrError(record.byte(valueOffset),
                                                          record.byte(valueOffset + 1) != 0));
            break;
        case RichStringRecord:
            takeRichString(record);
            break;
        case FormulaRecord:
            takeFormula(record);
            break;
        case StringRecord:
            m_string = StringContent(m_codec);
            m_string.begin(record, 0);
            break;
        case ContinueRecord:
            m_string.append(record.from(0));
            break;
        default:
            return;
        }
        if (record.type() == StringRecord || record.type() == ContinueRecord)
            takeString();
    }

    const QHash<quint32, XlsCell> &cells() const { return m_cells; }

private:
    void takeMultiple(const Record &record)
    {
        const int firstOffset = 4;
        const int pairSize = 6;
        const int lastColumnSize = 2;
        quint32 place = record.place();
        for (int offset = firstOffset; offset + pairSize + lastColumnSize <= record.size();
             offset += pairSize)
            m_cells.insert(place++, decodeRk(record.doubleWord(offset + 2)));
    }

    void takeRichString(const Record &record)
    {
        StringContent string(m_codec);
        string.begin(record, 6);
        m_cells.insert(record.place(), {XlsCell::RichText, string.text(), 0});
    }

    // The result is a number, or its last two bytes tell that it is none.
    void takeFormula(const Record &record)
    {
        m_formulaPlace = record.place();
        XlsCell cell = numberCell(XlsCell::Float, record.real(6));
        if (record.word(12) == 0xffff) {
            const quint8 kind = record.byte(6);
            cell = kind == 1 || kind == 2 ? booleanOrError(record.byte(8), kind == 2)
                                          : XlsCell{XlsCell::String, QString(), 0};
        }
        m_cells.insert(m_formulaPlace, cell);
    }

    // A text follows the formula whose result it is.
    void takeString()
    {
        const auto cell = m_cells.find(m_formulaPlace);
        if (cell != m_cells.end() && cell->type == XlsCell::String)
            cell->text = m_string.text();
    }

    QTextCodec *m_codec;
    QHash<quint32, XlsCell> m_cells;
    quint32 m_formulaPlace = 0;
    StringContent m_string{nullptr};
};

} // namespace

BiffScan::BiffScan(const QByteArray &stream)
    : m_stream(stream)
{
    const int version8 = 0x0600;
    RecordWalk walk(m_stream, 0);
    Record record(0, QByteArray());
    while (walk.next(&record)) {
        if (record.type() == BofRecord && record.word(0) != version8)
            m_codecName = QByteArrayLiteral("windows-1252");
        else if (record.type() == CodePageRecord && !m_codecName.isEmpty())
            m_codecName = "windows-" + QByteArray::number(record.word(0));
        else if (record.type() == FilePassRecord)
            m_hasPassword = true;
        else if (record.type() == BoundSheetRecord)
            m_sheetOffsets += record.doubleWord(0);
    }
}

QHash<quint32, XlsCell> BiffScan::cells(int sheet) const
{
    QTextCodec *codec = nullptr;
    if (!m_codecName.isEmpty()) {
        codec = QTextCodec::codecForName(m_codecName);
        if (!codec)
            codec = QTextCodec::codecForName("ISO 8859-1");
    }
    CellCollector collector(codec);
    RecordWalk walk(m_stream, m_sheetOffsets.value(sheet));
    Record record(0, QByteArray());
    while (walk.next(&record))
        collector.take(record);
    return collector.cells();
}

} // namespace Morvex
