#include "test/upload/uploadfile.h"

#include "test/upload/uploadlines.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Morvex {
namespace {

const qint64 maxFileSize = 1024 * 1024 * 1024;
const std::size_t chunkSize = 1024 * 1024;

class Descriptor
{
public:
    // A pipe without a writer must not block.
    explicit Descriptor(const QString &path)
        : m_number(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC))
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }

    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    // The size of a regular file; -1 for anything else.
    qint64 fileSize() const
    {
        struct stat status = {};
        const bool isFile =
            m_number >= 0 && ::fstat(m_number, &status) == 0 && S_ISREG(status.st_mode);
        return isFile ? status.st_size : -1;
    }

    // The bytes read: 0 at the end, -1 on failure.
    ssize_t read(char *data, std::size_t size) const
    {
        ssize_t count = -1;
        do {
            count = ::read(m_number, data, size);
        } while (count < 0 && errno == EINTR);
        return count;
    }

private:
    int m_number;
};

void reportTooLarge(const QString &path)
{
    writeErrorLine("morvexrunner: quillbase: '" + path.toUtf8() +
                   "' is larger than 1 GB and is not uploaded\n");
}

} // namespace

std::optional<QByteArray> readUploadFile(const QString &path)
{
    if (path.isEmpty())
        return {};
    const Descriptor file(path);
    const qint64 size = file.fileSize();
    if (size < 0)
        return {};
    if (size > maxFileSize) {
        reportTooLarge(path);
        return {};
    }
    QByteArray content;
    content.reserve(static_cast<int>(size));
    std::vector<char> chunk(chunkSize);
    // What the file has become since it was asked for its size counts.
    for (;;) {
        const ssize_t count = file.read(chunk.data(), chunk.size());
        if (count < 0)
            return {};
        if (count == 0)
            return content;
        content.append(chunk.data(), static_cast<int>(count));
        if (content.size() > maxFileSize) {
            reportTooLarge(path);
            return {};
        }
    }
}

} // namespace Morvex
