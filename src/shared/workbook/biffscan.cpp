#include "shared/workbook/biffscan.h"

#include <QTextCodec>
#include <QTextDecoder>
#include <QtEndian>

#include <cstring>
#include <memory>

namespace Morvex {
namespace {

// The number behind some names is the version of the format that brought this form of the record.
enum RecordType {
    BlankRecord2 = 0x0001,
    IntegerRecord2 = 0x0002,
    NumberRecord2 = 0x0003,
    BooleanOrErrorRecord2 = 0x0005,
    FormulaRecord = 0x0006,
    StringRecord2 = 0x0007,
    BofRecord2 = 0x0009,
    EofRecord = 0x000a,
    FilePassRecord = 0x002f,
    ContinueRecord = 0x003c,
    CodePageRecord = 0x0042,
    BoundSheetRecord = 0x0085,
    MultipleRkRecord = 0x00bd,
    MultipleBlankRecord = 0x00be,
    RichStringRecord = 0x00d6,
    BlankRecord3 = 0x0201,
    NumberRecord3 = 0x0203,
    BooleanOrErrorRecord3 = 0x0205,
    FormulaRecord3 = 0x0206,
    StringRecord3 = 0x0207,
    BofRecord3 = 0x0209,
    RkRecord = 0x027e,
    FormulaRecord4 = 0x0406,
    BofRecord4 = 0x0409,
    BofRecord5 = 0x0809,
};

// One record. Reading outside of it gives 0.
class Record
{
public:
    Record(int type, const QByteArray &content)
        : m_type(type)
        , m_content(content)
    {
    }

    int type() const { return m_type; }
    bool isBof() const
    {
        return m_type == BofRecord2 || m_type == BofRecord3 || m_type == BofRecord4 ||
               m_type == BofRecord5;
    }
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
        if (offset < 0 || offset + int(sizeof(Number)) > m_content.size())
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
            if (record->isBof())
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
// versions without the flag have bytes of the code page, in which a piece may cut a character.
class StringContent
{
public:
    explicit StringContent(QTextCodec *codec)
        : m_decoder(codec ? codec->makeDecoder() : nullptr)
    {
    }

    void begin(int length, const QByteArray &piece)
    {
        m_left = length;
        append(piece);
    }

    void append(const QByteArray &piece)
    {
        if (m_decoder) {
            m_text += m_decoder->toUnicode(piece.left(m_left));
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
    std::unique_ptr<QTextDecoder> m_decoder;
    QString m_text;
    int m_left = 0;
};

// Collects the cells of one sheet.
class CellCollector
{
public:
    CellCollector(QTextCodec *codec, int valueOffset)
        : m_codec(codec)
        , m_valueOffset(valueOffset)
    {
    }

    void take(const Record &record)
    {
        // Other records have continuations, too.
        const bool continuesString = m_isInString;
        m_isInString = false;
        switch (record.type()) {
        case IntegerRecord2:
            insert(record, numberCell(XlsCell::Integer, record.word(m_valueOffset)));
            break;
        case NumberRecord2:
        case NumberRecord3:
            insert(record, numberCell(XlsCell::Float, record.real(m_valueOffset)));
            break;
        case RkRecord:
            insert(record, decodeRk(record.doubleWord(m_valueOffset)));
            break;
        case MultipleRkRecord:
            takeMultiple(record);
            break;
        case BooleanOrErrorRecord2:
        case BooleanOrErrorRecord3:
            insert(record,
                   booleanOrError(record.byte(m_valueOffset), record.byte(m_valueOffset + 1) != 0));
            break;
        case RichStringRecord:
            takeRichString(record);
            break;
        case FormulaRecord:
        case FormulaRecord3:
        case FormulaRecord4:
            takeFormula(record);
            break;
        case StringRecord2:
            beginString(record.byte(0), record.from(1));
            break;
        case StringRecord3:
            beginString(record.word(0), record.from(2));
            break;
        case ContinueRecord:
            if (continuesString)
                continueString(record.from(0));
            break;
        default:
            break;
        }
    }

    const QHash<quint32, XlsCell> &cells() const { return m_cells; }

private:
    void insert(const Record &record, const XlsCell &cell) { m_cells.insert(record.place(), cell); }

    void takeMultiple(const Record &record)
    {
        const int firstOffset = 4;
        const int pairSize = 6;
        const int lastColumnSize = 2;
        unsigned column = record.word(2);
        for (int offset = firstOffset;
             offset + pairSize + lastColumnSize <= record.size() && column <= BiffScan::maxColumn;
             offset += pairSize)
            m_cells.insert(BiffScan::place(record.word(0), column++),
                           decodeRk(record.doubleWord(offset + 2)));
    }

    void takeRichString(const Record &record)
    {
        StringContent string(m_codec);
        string.begin(record.word(m_valueOffset), record.from(m_valueOffset + 2));
        insert(record, {XlsCell::RichText, string.text(), 0});
    }

    // The result is a number, or its last two bytes tell that it is none.
    void takeFormula(const Record &record)
    {
        m_formulaPlace = record.place();
        XlsCell cell = numberCell(XlsCell::Float, record.real(m_valueOffset));
        if (record.word(m_valueOffset + 6) == 0xffff) {
            const quint8 kind = record.byte(m_valueOffset);
            cell = kind == 1 || kind == 2
                       ? booleanOrError(record.byte(m_valueOffset + 2), kind == 2)
                       : XlsCell{XlsCell::String, QString(), 0};
        }
        insert(record, cell);
    }

    // A text follows the formula whose result it is.
    void beginString(int length, const QByteArray &piece)
    {
        m_string = StringContent(m_codec);
        m_string.begin(length, piece);
        storeString();
    }

    void continueString(const QByteArray &piece)
    {
        m_string.append(piece);
        storeString();
    }

    void storeString()
    {
        const auto cell = m_cells.find(m_formulaPlace);
        if (cell != m_cells.end() && cell->type == XlsCell::String)
            cell->text = m_string.text();
        m_isInString = true;
    }

    QTextCodec *const m_codec;
    const int m_valueOffset;
    QHash<quint32, XlsCell> m_cells;
    quint32 m_formulaPlace = 0;
    StringContent m_string{nullptr};
    bool m_isInString = false;
};

// Null for a code page that is not known.
QTextCodec *codecOf(quint16 codePage)
{
    const quint16 oldMacintosh = 0x8000;
    const quint16 oldWindows = 0x8001;
    const quint16 macintosh = 10000;
    if (codePage == oldMacintosh || codePage == macintosh)
        return QTextCodec::codecForName("macintosh");
    const QByteArray number = QByteArray::number(codePage == oldWindows ? 1252 : codePage);
    for (const char *family : {"windows-", "IBM"}) {
        if (QTextCodec *codec = QTextCodec::codecForName(family + number))
            return codec;
    }
    return nullptr;
}

} // namespace

BiffScan::BiffScan(const QByteArray &stream)
    : m_stream(stream)
{
    RecordWalk walk(m_stream, 0);
    Record record(0, QByteArray());
    while (walk.next(&record)) {
        if (record.isBof())
            begin(record.type(), record.word(0), record.word(2));
        else if (record.type() == CodePageRecord && m_hasCodePage)
            m_codec = codecOf(record.word(0));
        else if (record.type() == FilePassRecord)
            m_hasPassword = true;
        else if (record.type() == BoundSheetRecord)
            m_sheetOffsets += record.doubleWord(0);
    }
}

void BiffScan::begin(int bofType, int version, int content)
{
    const int version8 = 0x0600;
    const int sheet = 0x0010;
    m_hasCodePage = bofType != BofRecord5 || version != version8;
    m_codec = m_hasCodePage ? codecOf(1252) : nullptr;
    // In front of the value are the place and a format of two bytes, once of three.
    m_valueOffset = bofType == BofRecord2 ? 7 : 6;
    // A file of old has one sheet and nothing around it.
    if (bofType != BofRecord5 && content == sheet)
        m_sheetOffsets += 0;
}

std::optional<QHash<quint32, XlsCell>> BiffScan::cells(int sheet) const
{
    CellCollector collector(m_codec, m_valueOffset);
    RecordWalk walk(m_stream, m_sheetOffsets.value(sheet));
    Record record(0, QByteArray());
    if (!walk.next(&record))
        return std::nullopt;
    while (walk.next(&record))
        collector.take(record);
    return collector.cells();
}

bool BiffScan::hasBlank(int sheet, unsigned row, unsigned column) const
{
    const quint32 wanted = place(row, column);
    RecordWalk walk(m_stream, m_sheetOffsets.value(sheet));
    Record record(0, QByteArray());
    while (walk.next(&record)) {
        const bool isOne = record.type() == BlankRecord2 || record.type() == BlankRecord3;
        const bool isRange = record.type() == MultipleBlankRecord;
        const quint32 last =
            isRange ? place(record.word(0), record.word(record.size() - 2)) : record.place();
        if ((isOne || isRange) && record.place() <= wanted && wanted <= last)
            return true;
    }
    return false;
}

} // namespace Morvex
