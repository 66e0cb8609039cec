#include "test/child/reportsocket.h"

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace Morvex {
namespace {

// What comes in over the socket goes into the report, so that nobody else may connect. The server's
// own option for this would replace the socket of another run without a word.
class OwnerOnlyFiles
{
public:
    OwnerOnlyFiles()
        : m_before(::umask(S_IRWXG | S_IRWXO))
    {
    }
    ~OwnerOnlyFiles() { ::umask(m_before); }

    OwnerOnlyFiles(const OwnerOnlyFiles &) = delete;
    OwnerOnlyFiles &operator=(const OwnerOnlyFiles &) = delete;

private:
    mode_t m_before;
};

// A connection to it would do as well, but the other run would take that for its report.
bool isServed(const QByteArray &path)
{
    const unsigned acceptsConnections = 1U << 16U;
    QFile sockets(QStringLiteral("/proc/net/unix"));
    if (!sockets.open(QIODevice::ReadOnly))
        return false;
    const QList<QByteArray> lines = sockets.readAll().split('\n');
    for (const QByteArray &line : lines) {
        // Number: references, protocol, flags, type, state, inode, path
        const unsigned flags = line.split(' ').value(3).toUInt(nullptr, 16);
        if ((flags & acceptsConnections) != 0 && line.endsWith(' ' + path))
            return true;
    }
    return false;
}

} // namespace

bool listenForReport(QLocalServer *server, const QString &name,
                     std::unique_ptr<QTemporaryDir> *directory)
{
    const OwnerOnlyFiles ownerOnly;
    if (server->listen(name))
        return true;
    if (isServed(QFile::encodeName(QDir::tempPath() + QLatin1Char('/') + name)))
        return false;
    // The path is too long for a socket, or there is the one of a killed run, perhaps another
    // user's, or of a run in another container that shares the directory: it isn't seen here.
    *directory = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/morvexrunner-XXXXXX"));
    return (*directory)->isValid() && server->listen((*directory)->filePath(name));
}

} // namespace Morvex
