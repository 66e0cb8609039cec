#pragma once

namespace Morvex {

/// A shared library that the application may have, or load later.
class LoadedLibrary
{
public:
    /// By the name under which others are linked to it.
    explicit LoadedLibrary(const char *name)
        : m_name(name)
    {
    }

    /// For dlsym; null as long as it is not there. Costs little, also when it is asked for each
    /// object: the library is looked for again only when the process has loaded another one.
    void *handle();

private:
    const char *m_name;
    void *m_handle = nullptr;
    unsigned long long m_seenLibraries = 0;
};

} // namespace Morvex
