#include "qtbackend/loadedlibrary.h"

#include <cstddef>
#include <dlfcn.h>
#include <link.h>

namespace Morvex {
namespace {

// How many libraries the process has loaded so far.
unsigned long long loadedLibraries()
{
    unsigned long long count = 0;
    ::dl_iterate_phdr(
        [](dl_phdr_info *info, std::size_t, void *result) {
            *static_cast<unsigned long long *>(result) = info->dlpi_adds;
            return 1;
        },
        &count);
    return count;
}

} // namespace

void *LoadedLibrary::handle()
{
    if (m_handle)
        return m_handle;
    const unsigned long long libraries = loadedLibraries();
    if (libraries != m_seenLibraries)
        m_handle = ::dlopen(m_name, RTLD_NOW | RTLD_NOLOAD);
    m_seenLibraries = libraries;
    return m_handle;
}

} // namespace Morvex
