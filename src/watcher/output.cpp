#include "output.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace Morvex {
namespace {

// So much of an output is shown; the ring has the end of it.
const std::size_t maxShown = 1024 * 1024;
// Of what the standard error doesn't take at once, the rest is left out.
const std::size_t maxHeldUp = 64 * 1024;
const std::size_t readSize = 64 * 1024;
const std::size_t maxDrained = 1024 * 1024;

} // namespace

Output::Output(OutputRing *ring, bool isShown)
    : m_ring(ring)
    , m_isShown(isShown)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return;
    m_readEnd = ends[0];
    m_writeEnd = ends[1];
    ::fcntl(m_readEnd, F_SETFL, O_NONBLOCK);
}

Output::~Output()
{
    closeProgramEnd();
    if (m_readEnd >= 0)
        ::close(m_readEnd);
}

void Output::closeProgramEnd()
{
    if (m_writeEnd >= 0)
        ::close(m_writeEnd);
    m_writeEnd = -1;
}

void Output::drain()
{
    char bytes[readSize];
    for (std::size_t drained = 0; m_readEnd >= 0 && drained < maxDrained;) {
        const ssize_t size = ::read(m_readEnd, bytes, sizeof bytes);
        if (size < 0)
            return;
        if (size == 0) {
            ::close(m_readEnd);
            m_readEnd = -1;
            return;
        }
        drained += static_cast<std::size_t>(size);
        keep(bytes, static_cast<std::size_t>(size));
        if (m_isShown)
            addToShown(bytes, static_cast<std::size_t>(size));
    }
}

void Output::keep(const char *bytes, std::size_t size)
{
    if (!m_ring)
        return;
    const std::uint64_t before = m_ring->written;
    m_ring->reserved = before + size;
    const std::size_t place = before % OutputRing::capacity;
    const std::size_t first = std::min(size, OutputRing::capacity - place);
    std::memcpy(m_ring->bytes + place, bytes, first);
    std::memcpy(m_ring->bytes, bytes + first, size - first);
    m_ring->written = before + size;
}

void Output::addToShown(const char *bytes, std::size_t size)
{
    if (m_shownInAll < maxShown && m_shown.size() < maxHeldUp)
        m_shown.append(bytes, std::min(size, maxShown - m_shownInAll));
    if (m_shownInAll < maxShown && m_shownInAll + size >= maxShown)
        m_shown += "\n[the rest of this output of the application is not shown]\n";
    m_shownInAll += size;
    show();
}

// Pieces that a pipe with room takes whole: a reader that is slow must not hold up the watch.
void Output::show()
{
    while (!m_shown.empty()) {
        pollfd shown = {STDERR_FILENO, POLLOUT, 0};
        if (::poll(&shown, 1, 0) <= 0)
            return;
        const ssize_t written =
            ::write(STDERR_FILENO, m_shown.data(), std::min<std::size_t>(m_shown.size(), PIPE_BUF));
        if (written <= 0)
            return m_shown.clear();
        m_shown.erase(0, static_cast<std::size_t>(written));
    }
}

} // namespace Morvex
