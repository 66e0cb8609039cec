#pragma once

#include "morvex_export.h"

#include <QFile>
#include <QString>
#include <QTextStream>

#include <memory>

namespace Morvex {

class TestDataSet;

/// Reads delimited text in UTF-8: logical lines, in which quoted fields may hold line breaks, and
/// their fields.
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

private:
    bool fillBuffer();

    std::unique_ptr<QFile> m_file;
    std::unique_ptr<QTextStream> m_stream;
    QString m_errorText;
    // Decoded text that was not yet given out begins at m_position.
    QString m_buffer;
    int m_position = 0;
    // Counts logical lines; -1 before the first.
    int m_lineNumber = -1;
};

} // namespace Morvex
