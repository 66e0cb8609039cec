#include "test/reportstream.h"

#include "test/openreportfile.h"

#include <QFile>

#include <cerrno>
#include <cstring>

namespace Morvex {

ReportStream::ReportStream(const QString &fileName, std::ios::openmode mode, Buffering buffering)
    : std::ostream(nullptr)
    , m_buffer(fileName)
{
    if (buffering == Unbuffered)
        m_buffer.pubsetbuf(nullptr, 0);
    m_buffer.open(QFile::encodeName(fileName).constData(), mode | std::ios::out);
    rdbuf(&m_buffer);
}

// What closes the file would not tell of a failure.
ReportStream::~ReportStream()
{
    flush();
}

ReportStream::Buffer::Buffer(const QString &fileName)
    : m_fileName(fileName)
{
}

std::streamsize ReportStream::Buffer::xsputn(const char *data, std::streamsize size)
{
    const std::streamsize written = std::filebuf::xsputn(data, size);
    if (written != size)
        tellOnce();
    return written;
}

ReportStream::Buffer::int_type ReportStream::Buffer::overflow(int_type byte)
{
    const int_type result = std::filebuf::overflow(byte);
    if (traits_type::eq_int_type(result, traits_type::eof()))
        tellOnce();
    return result;
}

int ReportStream::Buffer::sync()
{
    const int result = std::filebuf::sync();
    if (result != 0)
        tellOnce();
    return result;
}

void ReportStream::Buffer::tellOnce()
{
    const int reason = errno;
    if (!m_isTold && is_open())
        tellWriteError(m_fileName, QString::fromLocal8Bit(std::strerror(reason)));
    m_isTold = true;
}

} // namespace Morvex
