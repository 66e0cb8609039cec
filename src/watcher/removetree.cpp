#include "removetree.h"

#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Morvex {
namespace {

// Each level takes a descriptor.
const int maxDepth = 200;

class Removal
{
public:
    Removal(const char *path, dev_t device)
        : m_path(path)
        , m_device(device)
    {
    }

    // What is too deep is moved to the top, to be removed with the next pass.
    void run()
    {
        int movedBefore;
        do {
            movedBefore = m_moved;
            removeEntry(AT_FDCWD, m_path, 0);
        } while (m_moved > movedBefore);
    }

private:
    void removeContent(int directory, int depth)
    {
        DIR *entries = ::fdopendir(directory);
        if (!entries) {
            ::close(directory);
            return;
        }
        if (depth == 1)
            m_top = directory;
        while (const dirent *entry = ::readdir(entries)) {
            if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
                removeEntry(directory, entry->d_name, depth);
        }
        ::closedir(entries);
    }

    void removeEntry(int parent, const char *name, int depth)
    {
        struct stat status = {};
        if (::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0 || status.st_dev != m_device)
            return;
        if (!S_ISDIR(status.st_mode)) {
            ::unlinkat(parent, name, 0);
            return;
        }
        [[maybe_unused]] const int changed = ::fchmodat(parent, name, S_IRWXU, 0);
        if (depth >= maxDepth)
            return moveToTop(parent, name);
        const int directory =
            ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (directory >= 0)
            removeContent(directory, depth + 1);
        ::unlinkat(parent, name, AT_REMOVEDIR);
    }

    void moveToTop(int parent, const char *name)
    {
        char moved[32];
        std::snprintf(moved, sizeof moved, ".morvex-moved-%d", m_moved);
        if (::renameat(parent, name, m_top, moved) == 0)
            ++m_moved;
    }

    const char *m_path;
    dev_t m_device;
    int m_top = -1;
    int m_moved = 0;
};

} // namespace

void removeTree(const char *path)
{
    struct stat status = {};
    if (::lstat(path, &status) == 0)
        Removal(path, status.st_dev).run();
}

} // namespace Morvex
