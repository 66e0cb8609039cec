#include "test/output/reportstream.h"

#include "shared/files/filelock.h"
#include "test/openreportfile.h"

#include <cerrno>
#include <cstring>

namespace Morvex {
namespace {

const std::size_t bufferSize = 64 * 1024;

} // namespace

ReportStream::ReportStream(const QString &fileName, TargetContent content, Buffering buffering,
                           std::unique_ptr<FileLock> lock)
    : std::ostream(nullptr)
    , m_lock(std::move(lock))
    , m_buffer(fileName, content, buffering)
{
    rdbuf(&m_buffer);
}

// Closing the file would not report a failure.
ReportStream::~ReportStream()
{
    flush();
}

ReportStream::Buffer::Buffer(const QString &fileName, TargetContent content, Buffering buffering)
    : m_capacity(buffering == Buffered ? bufferSize : 0)
{
    m_error = openReportTarget(fileName, content, &m_file, &m_isTaken);
    m_pending.reserve(m_capacity);
}

std::streamsize ReportStream::Buffer::xsputn(const char *data, std::streamsize size)
{
    const auto length = static_cast<std::size_t>(size);
    if (m_pending.size() + length > m_capacity && sync() != 0)
        return 0;
    if (length >= m_capacity)
        return writeOut(data, size) ? size : 0;
    m_pending.append(data, length);
    return size;
}

ReportStream::Buffer::int_type ReportStream::Buffer::overflow(int_type byte)
{
    if (traits_type::eq_int_type(byte, traits_type::eof()))
        return traits_type::not_eof(byte);
    const char character = traits_type::to_char_type(byte);
    return xsputn(&character, 1) == 1 ? byte : traits_type::eof();
}

int ReportStream::Buffer::sync()
{
    if (m_pending.empty())
        return 0;
    const bool isWritten =
        writeOut(m_pending.data(), static_cast<std::streamsize>(m_pending.size()));
    m_pending.clear();
    return isWritten ? 0 : -1;
}

ReportStream::Buffer::pos_type
ReportStream::Buffer::seekoff(off_type offset, std::ios::seekdir from, std::ios::openmode)
{
    if (offset != 0 || from == std::ios::beg || sync() != 0)
        return pos_type(off_type(-1));
    return pos_type(m_file.size());
}

bool ReportStream::Buffer::writeOut(const char *data, std::streamsize size)
{
    if (m_isBroken || !isOpen())
        return false;
    m_isBroken = !writeWhole(m_file.handle(), data, static_cast<std::size_t>(size));
    if (m_isBroken)
        reportWriteError(m_file.fileName(), QString::fromLocal8Bit(std::strerror(errno)));
    return !m_isBroken;
}

} // namespace Morvex
