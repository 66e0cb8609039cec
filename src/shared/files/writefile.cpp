#include "shared/files/writefile.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

namespace Morvex {
namespace {

using Pieces = std::vector<std::string_view>;

// An open file. Operations return 0 or an errno, as all functions here.
class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Descriptor() { close(); }

    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

    void open(int descriptor)
    {
        close();
        m_descriptor = descriptor;
    }

    // Some file systems report a full disk only here.
    int close()
    {
        const int descriptor = std::exchange(m_descriptor, -1);
        return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR ? 0 : errno;
    }

private:
    int m_descriptor;
};

int writeAll(int descriptor, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR)
            return errno;
        if (written == 0)
            return ENOSPC;
        content.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return 0;
}

int writePieces(int descriptor, const Pieces &pieces)
{
    for (const std::string_view piece : pieces) {
        if (const int error = writeAll(descriptor, piece))
            return error;
    }
    return 0;
}

int truncate(int descriptor, off_t length)
{
    return ::ftruncate(descriptor, length) == 0 ? 0 : errno;
}

// Where the file system can't reserve, the new length is written.
int extend(int descriptor, off_t from, off_t to)
{
    static const std::array<char, 64 * 1024> zeros = {};
    while (from < to) {
        const auto size = static_cast<std::size_t>(std::min<off_t>(to - from, zeros.size()));
        const ssize_t written = ::pwrite(descriptor, zeros.data(), size, from);
        if (written < 0 && errno != EINTR)
            return errno;
        if (written == 0)
            return ENOSPC;
        from += std::max<ssize_t>(written, 0);
    }
    return 0;
}

int reserve(int descriptor, off_t oldLength, off_t length)
{
    if (length == 0 || ::fallocate(descriptor, 0, 0, length) == 0)
        return 0;
    const int error = errno;
    if (error == EOPNOTSUPP || error == ENOSYS)
        return extend(descriptor, oldLength, length);
    return error;
}

int writeInPlace(int descriptor, off_t oldLength, std::string_view content)
{
    const auto length = static_cast<off_t>(content.size());
    if (const int error = reserve(descriptor, oldLength, length)) {
        // Takes back what was reserved before the disk was full.
        truncate(descriptor, oldLength);
        return error;
    }
    if (const int error = writeAll(descriptor, content))
        return error;
    return truncate(descriptor, length);
}

// False when there is one that can't be copied.
bool copyAccessControlList(int from, int to)
{
    const char name[] = "system.posix_acl_access";
    const ssize_t size = ::fgetxattr(from, name, nullptr, 0);
    if (size < 0)
        return errno == ENODATA || errno == EOPNOTSUPP;
    QByteArray list(static_cast<int>(size), '\0');
    return ::fgetxattr(from, name, list.data(), static_cast<std::size_t>(size)) == size &&
           ::fsetxattr(to, name, list.constData(), static_cast<std::size_t>(size), 0) == 0;
}

// What is open keeps its name, as when standard output goes to a file.
bool isNameOfOpenFile(const QByteArray &path)
{
    return path.startsWith("/dev/") || path.startsWith("/proc/");
}

// Through all links; empty on failure.
QByteArray realPath(const QByteArray &path)
{
    const std::unique_ptr<char, void (*)(void *)> real(::realpath(path.constData(), nullptr),
                                                       std::free);
    return real.get();
}

bool isAt(const QByteArray &path, const struct stat &status)
{
    struct stat found = {};
    return ::lstat(path.constData(), &found) == 0 && found.st_dev == status.st_dev &&
           found.st_ino == status.st_ino;
}

// A rename may reach the disk before the content does. What has no such state is fine.
int waitUntilOnDisk(int descriptor)
{
    return ::fsync(descriptor) == 0 || errno == EINVAL ? 0 : errno;
}

// The new content in a file of its own, which is removed unless it takes the place of the old one.
class Replacement
{
public:
    // Not possible when anything of the old file would be lost.
    Replacement(const QByteArray &path, int target, const struct stat &status)
        : m_path(realPath(path))
        , m_name(m_path.left(m_path.lastIndexOf('/') + 1) + ".morvex-XXXXXX")
        , m_file(isNameOfOpenFile(path) || status.st_nlink != 1 || !isAt(m_path, status)
                     ? -1
                     : ::mkostemp(m_name.data(), O_CLOEXEC))
        , m_isLeft(m_file.isOpen())
        , m_isPossible(m_isLeft && takeAttributes(target, status))
    {
    }

    ~Replacement()
    {
        if (m_isLeft)
            ::unlink(m_name.constData());
    }

    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    bool isPossible() const { return m_isPossible; }

    int write(const Pieces &pieces)
    {
        if (const int error = writePieces(m_file.get(), pieces))
            return error;
        if (const int error = waitUntilOnDisk(m_file.get()))
            return error;
        if (const int error = m_file.close())
            return error;
        if (::rename(m_name.constData(), m_path.constData()) != 0)
            return errno;
        m_isLeft = false;
        return 0;
    }

private:
    bool takeAttributes(int target, const struct stat &status) const
    {
        struct stat own = {};
        return ::fstat(m_file.get(), &own) == 0 && own.st_uid == status.st_uid &&
               own.st_gid == status.st_gid && ::fchmod(m_file.get(), status.st_mode & 07777) == 0 &&
               copyAccessControlList(target, m_file.get());
    }

    const QByteArray m_path;
    QByteArray m_name;
    Descriptor m_file;
    bool m_isLeft;
    const bool m_isPossible;
};

std::string joined(const Pieces &pieces)
{
    std::string content;
    for (const std::string_view piece : pieces)
        content += piece;
    return content;
}

int writeRegularFile(const QByteArray &path, int target, const struct stat &status,
                     const Pieces &pieces)
{
    Replacement replacement(path, target, status);
    if (replacement.isPossible())
        return replacement.write(pieces);
    // What is written in place may be pieces of what it is written over.
    return writeInPlace(target, status.st_size, joined(pieces));
}

// Without waiting for the reader of a pipe.
int openForWriting(const QByteArray &path, int flags)
{
    const int descriptor =
        ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | flags, 0666);
    if (descriptor >= 0)
        ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    return descriptor;
}

FileWriteResult resultOf(int error, FileWriteResult::Outcome failure)
{
    if (error == 0)
        return {FileWriteResult::Written, QString()};
    return {failure, qt_error_string(error)};
}

} // namespace

FileWriteResult writeFileSafely(const QString &path, const char *data, qint64 size)
{
    return writeFileSafely(path, {std::string_view(data, static_cast<std::size_t>(size))});
}

FileWriteResult writeFileSafely(const QString &path, const std::vector<std::string_view> &pieces)
{
    const QByteArray name = QFile::encodeName(path);
    Descriptor target(openForWriting(name, 0));
    const bool isNew = !target.isOpen() && errno == ENOENT;
    if (isNew)
        target.open(openForWriting(name, O_CREAT));
    struct stat status = {};
    if (!target.isOpen() || ::fstat(target.get(), &status) != 0)
        return resultOf(errno, FileWriteResult::NotOpened);
    const int writeError = S_ISREG(status.st_mode)
                               ? writeRegularFile(name, target.get(), status, pieces)
                               : writePieces(target.get(), pieces);
    const int closeError = target.close();
    const int error = writeError != 0 ? writeError : closeError;
    if (error != 0 && isNew)
        ::unlink(realPath(name).constData());
    return resultOf(error, FileWriteResult::NotWritten);
}

} // namespace Morvex
