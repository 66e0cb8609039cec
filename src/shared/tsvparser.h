#pragma once

#include "morvex_export.h"

#include <QFile>
#include <QString>
#include <QTextDecoder>

#include <memory>
#include <string>
#include <string_view>

namespace Morvex {

class TestDataSet;

/// Reads delimited text: logical lines, in which quoted fields may hold line breaks, and their
/// fields. The text is UTF-8, or what a byte order mark says. A line of more than 1 GB ends the
/// file with an error.
class MORVEX_EXPORT TsvParser
{
public:
    explicit TsvParser(const QString &fileName);
    ~TsvParser();

    TsvParser(const TsvParser &) = delete;
    TsvParser &operator=(const TsvParser &) = delete;

    /// A file that can't be opened reads like an empty one, with a warning.
    void open(const QString &fileName);
    /// Empty when no file is open.
    QString name() const;
    /// Why no file is open, or why it seems to end where reading failed; empty without either.
    QString errorText() const;
    /// Goes back to the start of the file, which is opened again.
    void rewind();

    /// The next logical line, with its quotes and without its line end; empty at the end too.
    QString nextLine();
    /// The separators outside of quotes; -1 in an empty line.
    int countSeparator(const QString &line, char sep) const;
    /// Adds the fields of the line that was read last to @p dataSet, as its header when that was
    /// the first one. A count of fields that is not the header's is reported on standard error.
    void parseRecord(TestDataSet *dataSet, const QString &line, char sep) const;
    /// The two in one. False when the line is empty.
    bool readRecord(TestDataSet *dataSet, char sep);

private:
    std::string_view takeLine();
    bool fillBuffer();
    void detectEncoding();
    void decodeFrom(std::size_t position);
    void stop(const QString &error);

    std::unique_ptr<QFile> m_file;
    // Null for UTF-8.
    std::unique_ptr<QTextDecoder> m_decoder;
    // The first half of a character whose second half is not read yet.
    QString m_halfCharacter;
    QString m_errorText;
    // UTF-8 from which the lines up to m_position are taken.
    std::string m_buffer;
    std::size_t m_position = 0;
    // Counts logical lines; -1 before the first.
    int m_lineNumber = -1;
};

} // namespace Morvex
