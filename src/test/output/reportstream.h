#pragma once

#include "morvex_export.h"
#include "test/output/reporttarget.h"

#include <QFile>
#include <QString>

#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

namespace Morvex {

class FileLock;

/// The file of a report that is written as a stream. The first write error is reported on standard
/// error, once; the stream is bad from then on and takes nothing more.
class MORVEX_EXPORT ReportStream : public std::ostream
{
public:
    enum Buffering {
        Buffered,
        /// Each write reaches the file at once.
        Unbuffered
    };

    /// Keeps @p lock, which may be null, until the file is closed.
    ReportStream(const QString &fileName, TargetContent content, Buffering buffering,
                 std::unique_ptr<FileLock> lock);
    ~ReportStream() override;

    bool isOpen() const { return m_buffer.isOpen(); }
    /// Says that another report has the file, if that is why it is not open; empty otherwise.
    QString takenError() const { return m_buffer.takenError(); }

private:
    class Buffer : public std::streambuf
    {
    public:
        Buffer(const QString &fileName, TargetContent content, Buffering buffering);

        bool isOpen() const { return m_error.isEmpty(); }
        QString takenError() const { return m_isTaken ? m_error : QString(); }

    protected:
        std::streamsize xsputn(const char *data, std::streamsize size) override;
        int_type overflow(int_type byte) override;
        int sync() override;
        /// Only says where the end is.
        pos_type seekoff(off_type offset, std::ios::seekdir from, std::ios::openmode mode) override;

    private:
        bool writeOut(const char *data, std::streamsize size);

        QFile m_file;
        QString m_error;
        bool m_isTaken = false;
        std::string m_pending;
        std::size_t m_capacity;
        bool m_isBroken = false;
    };

    std::unique_ptr<FileLock> m_lock;
    Buffer m_buffer;
};

} // namespace Morvex
