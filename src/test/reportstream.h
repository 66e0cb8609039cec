#pragma once

#include "morvex_export.h"

#include <QString>

#include <fstream>
#include <ostream>

namespace Morvex {

/// The file of a report that is written as a stream. The first write error is told on standard
/// error, once; the stream is bad from then on and takes nothing more.
class MORVEX_EXPORT ReportStream : public std::ostream
{
public:
    enum Buffering {
        Buffered,
        /// Each write reaches the file at once.
        Unbuffered
    };

    /// @p mode as of std::ofstream.
    ReportStream(const QString &fileName, std::ios::openmode mode, Buffering buffering);
    ~ReportStream() override;

    bool isOpen() const { return m_buffer.is_open(); }

private:
    class Buffer : public std::filebuf
    {
    public:
        explicit Buffer(const QString &fileName);

    protected:
        std::streamsize xsputn(const char *data, std::streamsize size) override;
        int_type overflow(int_type byte) override;
        int sync() override;

    private:
        void tellOnce();

        QString m_fileName;
        bool m_isTold = false;
    };

    Buffer m_buffer;
};

} // namespace Morvex
