#include "support/filesizelimit.h"

namespace MorvexTest {

FileSizeLimit::FileSizeLimit(rlim_t bytes)
    : m_handler(std::signal(SIGXFSZ, SIG_IGN))
{
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit = {bytes, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

FileSizeLimit::~FileSizeLimit()
{
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
}

} // namespace MorvexTest
