#include "removetree.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Morvex {
namespace {

// Each level takes a descriptor.
const int maxDepth = 200;

void removeEntry(int parent, const char *name, dev_t device, int depth);

void removeContent(int directory, dev_t device, int depth)
{
    DIR *entries = ::fdopendir(directory);
    if (!entries) {
        ::close(directory);
        return;
    }
    while (const dirent *entry = ::readdir(entries)) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            removeEntry(directory, entry->d_name, device, depth);
    }
    ::closedir(entries);
}

void removeEntry(int parent, const char *name, dev_t device, int depth)
{
    struct stat status = {};
    if (::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0 || status.st_dev != device)
        return;
    if (!S_ISDIR(status.st_mode)) {
        ::unlinkat(parent, name, 0);
        return;
    }
    [[maybe_unused]] const int changed = ::fchmodat(parent, name, S_IRWXU, 0);
    const int directory =
        depth < maxDepth ? ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)
                         : -1;
    if (directory >= 0)
        removeContent(directory, device, depth + 1);
    ::unlinkat(parent, name, AT_REMOVEDIR);
}

} // namespace

void removeTree(const char *path)
{
    struct stat status = {};
    if (::lstat(path, &status) == 0)
        removeEntry(AT_FDCWD, path, status.st_dev, 0);
}

} // namespace Morvex
