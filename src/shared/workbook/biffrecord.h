#pragma once

#include <QtGlobal>

#include <string_view>

namespace Morvex {

/// A record of the stream of an .xls workbook, valid as long as the stream. What is outside of it
/// reads as 0.
class BiffRecord
{
public:
    /// The number after some names is the version of the format that brought this form.
    enum Type : quint16 {
        Blank2 = 0x0001,
        Integer2 = 0x0002,
        Number2 = 0x0003,
        Label2 = 0x0004,
        BooleanOrError2 = 0x0005,
        Formula = 0x0006,
        String2 = 0x0007,
        Bof2 = 0x0009,
        Eof = 0x000a,
        FilePass = 0x002f,
        Continue = 0x003c,
        CodePage = 0x0042,
        BoundSheet = 0x0085,
        SheetHeader = 0x008f,
        MultipleRk = 0x00bd,
        MultipleBlank = 0x00be,
        RichString = 0x00d6,
        SharedStrings = 0x00fc,
        SharedLabel = 0x00fd,
        Blank3 = 0x0201,
        Number3 = 0x0203,
        Label3 = 0x0204,
        BooleanOrError3 = 0x0205,
        Formula3 = 0x0206,
        String3 = 0x0207,
        Bof3 = 0x0209,
        Rk = 0x027e,
        Formula4 = 0x0406,
        Bof4 = 0x0409,
        Bof5 = 0x0809,
    };

    BiffRecord() = default;
    BiffRecord(quint16 type, std::string_view content)
        : m_type(type)
        , m_content(content)
    {
    }

    quint16 type() const { return m_type; }
    bool isBof() const;
    int size() const { return static_cast<int>(m_content.size()); }

    quint8 byte(int offset) const;
    quint16 word(int offset) const;
    quint32 doubleWord(int offset) const;
    double real(int offset) const;
    std::string_view from(int offset) const;

    // Of the records of cells.

    unsigned row() const { return word(0); }
    unsigned column() const { return word(2); }

private:
    template <typename Number>
    Number number(int offset) const;

    quint16 m_type = 0;
    std::string_view m_content;
};

/// Moves through the records of the part of a stream that begins at an offset. Parts of embedded
/// objects within it are skipped.
class BiffRecordWalk
{
public:
    BiffRecordWalk(std::string_view stream, quint32 offset)
        : m_stream(stream)
        , m_offset(offset)
    {
    }

    /// False at the end of the part, where the stream is damaged, and where no part begins.
    bool next(BiffRecord *record);
    /// Whether the part has ended as it should.
    bool isComplete() const { return m_isComplete; }
    /// After the current record.
    quint32 offset() const { return static_cast<quint32>(m_offset); }

private:
    bool read(BiffRecord *record);

    const std::string_view m_stream;
    std::size_t m_offset;
    int m_depth = 0;
    bool m_isComplete = false;
};

} // namespace Morvex
