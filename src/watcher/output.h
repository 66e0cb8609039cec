#pragma once

#include "remote/protocol/outputring.h"

#include <poll.h>
#include <string>

namespace Morvex {

/// One output of the program: what it writes goes into a ring, and its beginning to the standard
/// error of this process too if it is shown. The program never waits for anybody else to read it.
class Output
{
public:
    /// @p ring may be null; it is not owned.
    Output(OutputRing *ring, bool isShown);
    ~Output();

    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// What the program is to write to; negative when there is none. Closed by closeProgramEnd.
    int programEnd() const { return m_writeEnd; }
    void closeProgramEnd();

    /// What to wait for; a negative descriptor for nothing.
    pollfd wanted() const { return {m_readEnd, POLLIN, 0}; }

    /// Takes what is there, though not more than a pipe holds: a program may write without end.
    void drain();

    /// What is to be shown but was not taken yet.
    bool isHeldUp() const { return !m_shown.empty(); }
    void show();

private:
    void keep(const char *bytes, std::size_t size);
    void addToShown(const char *bytes, std::size_t size);

    OutputRing *m_ring;
    bool m_isShown;
    int m_readEnd = -1;
    int m_writeEnd = -1;
    std::string m_shown;
    std::size_t m_shownInAll = 0;
};

} // namespace Morvex
