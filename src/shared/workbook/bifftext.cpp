#include "shared/workbook/bifftext.h"

#include <QTextCodec>
#include <QtEndian>

#include <algorithm>

namespace Morvex {
namespace {

const quint8 isWideFlag = 0x01;
const quint8 hasPhoneticFlag = 0x04;
const quint8 hasRunsFlag = 0x08;

int unitSize(quint8 flags)
{
    return flags & isWideFlag ? 2 : 1;
}

QString decodeUnits(const char *bytes, int length, quint8 flags)
{
    if (!(flags & isWideFlag))
        return QString::fromLatin1(bytes, length);
    QString text(length, Qt::Uninitialized);
    qFromLittleEndian<quint16>(bytes, length, text.data());
    return text;
}

// Reads on from one piece to the next. Reading after the last one gives 0 and fails.
class PieceReader
{
public:
    explicit PieceReader(const std::vector<std::string_view> &pieces)
        : m_piece(pieces.begin())
        , m_end(pieces.end())
        , m_rest(pieces.empty() ? std::string_view() : pieces.front())
    {
    }

    bool hasFailed() const { return m_hasFailed; }

    quint32 number(int size)
    {
        quint32 value = 0;
        for (int i = 0; i < size; ++i)
            value |= quint32(byte()) << (8 * i);
        return value;
    }

    void skip(quint32 size)
    {
        while (size > 0 && goToBytes()) {
            const auto step = std::min<std::size_t>(size, m_rest.size());
            m_rest.remove_prefix(step);
            size -= static_cast<quint32>(step);
        }
    }

    // A piece that continues the text has flags of its own.
    QString text(int length, quint8 flags)
    {
        QString text = QLatin1String("");
        while (length > 0) {
            const int available = static_cast<int>(m_rest.size()) / unitSize(flags);
            const int step = std::min(length, available);
            text += decodeUnits(m_rest.data(), step, flags);
            m_rest.remove_prefix(static_cast<std::size_t>(step * unitSize(flags)));
            length -= step;
            if (length > 0 && !goToNextPiece())
                break;
            if (length > 0)
                flags = byte();
        }
        return text;
    }

private:
    quint8 byte()
    {
        if (!goToBytes())
            return 0;
        const auto value = static_cast<quint8>(m_rest.front());
        m_rest.remove_prefix(1);
        return value;
    }

    bool goToBytes()
    {
        while (m_rest.empty()) {
            if (!goToNextPiece())
                return false;
        }
        return true;
    }

    bool goToNextPiece()
    {
        if (m_piece != m_end)
            ++m_piece;
        m_hasFailed = m_piece == m_end;
        m_rest = m_hasFailed ? std::string_view() : *m_piece;
        return !m_hasFailed;
    }

    std::vector<std::string_view>::const_iterator m_piece;
    const std::vector<std::string_view>::const_iterator m_end;
    std::string_view m_rest;
    bool m_hasFailed = false;
};

QString readSharedString(PieceReader &reader)
{
    const auto length = static_cast<int>(reader.number(2));
    const auto flags = static_cast<quint8>(reader.number(1));
    const quint32 runSize = 4;
    const quint32 runs = flags & hasRunsFlag ? reader.number(2) : 0;
    const quint32 phoneticSize = flags & hasPhoneticFlag ? reader.number(4) : 0;
    const QString text = reader.text(length, flags);
    reader.skip(runs * runSize);
    reader.skip(phoneticSize);
    return text;
}

// Whether each byte is a letter of its own. Programs that write the code page of UTF-16 still
// store texts without other letters so.
bool isPlainLatin(std::string_view text)
{
    const auto isControl = [](char c) {
        const auto byte = static_cast<quint8>(c);
        return (byte < 0x20 && byte != '\n' && byte != '\t') || (byte >= 0x7f && byte < 0xa0);
    };
    return text.size() % 2 != 0 || std::none_of(text.begin(), text.end(), isControl);
}

} // namespace

BiffText::BiffText(QTextCodec *codec, int length, std::string_view piece)
    : m_decoder(codec ? codec->makeDecoder() : nullptr)
    , m_mayBeLatin(codec && codec->name() == "UTF-16LE")
    , m_text(QLatin1String(""))
    , m_left(length)
{
    append(piece);
}

void BiffText::append(std::string_view piece)
{
    const int size = static_cast<int>(piece.size());
    if (m_decoder) {
        const int length = std::min(m_left, size);
        const bool isLatin =
            m_mayBeLatin && isPlainLatin(piece.substr(0, static_cast<std::size_t>(length)));
        m_text += isLatin ? QString::fromLatin1(piece.data(), length)
                          : m_decoder->toUnicode(piece.data(), length);
        m_left -= length;
    } else if (size > 0) {
        const auto flags = static_cast<quint8>(piece.front());
        const int length = std::min(m_left, (size - 1) / unitSize(flags));
        m_text += decodeUnits(piece.data() + 1, length, flags);
        m_left -= length;
    }
}

QTextCodec *codecOfCodePage(quint16 codePage)
{
    const quint16 oldMacintosh = 0x8000;
    const quint16 oldWindows = 0x8001;
    const quint16 macintosh = 10000;
    const quint16 utf16 = 1200;
    if (codePage == utf16)
        return QTextCodec::codecForName("UTF-16LE");
    if (codePage == oldMacintosh || codePage == macintosh)
        return QTextCodec::codecForName("macintosh");
    const QByteArray number = QByteArray::number(codePage == oldWindows ? 1252 : codePage);
    for (const char *family : {"windows-", "IBM"}) {
        if (QTextCodec *codec = QTextCodec::codecForName(family + number))
            return codec;
    }
    return nullptr;
}

QVector<QString> readBiffSharedStrings(const std::vector<std::string_view> &pieces)
{
    PieceReader reader(pieces);
    // Of the references to the texts, which nobody needs.
    reader.skip(4);
    const quint32 count = reader.number(4);
    QVector<QString> texts;
    for (quint32 index = 0; index < count; ++index) {
        const QString text = readSharedString(reader);
        if (reader.hasFailed())
            break;
        texts += text;
    }
    return texts;
}

} // namespace Morvex
