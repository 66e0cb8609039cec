#include "shared/files/newfile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

namespace Morvex {
namespace {

const qint64 pieceSize = 64 * 1024;

// Also for a link that leads nowhere.
bool isThere(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

// The write after the one that a full disk has cut gives the reason.
[[nodiscard]] bool writeAll(QFile *file, const QByteArray &bytes)
{
    qint64 size = 0;
    while (size < bytes.size()) {
        const qint64 written = file->write(bytes.constData() + size, bytes.size() - size);
        if (written <= 0)
            return false;
        size += written;
    }
    return true;
}

// Returns an error text, empty on success.
[[nodiscard]] QString copy(QIODevice *content, QFile *file)
{
    while (true) {
        const QByteArray piece = content->read(pieceSize);
        if (piece.isEmpty())
            break;
        if (!writeAll(file, piece))
            return file->errorString();
    }
    if (auto *source = qobject_cast<QFile *>(content); source && source->error() != QFile::NoError)
        return source->errorString();
    if (!file->flush())
        return file->errorString();
    file->close();
    return file->error() == QFile::NoError ? QString() : file->errorString();
}

} // namespace

NewFile writeNewFile(const NumberedPath &pathOf, QIODevice *content)
{
    for (int number = 1;; ++number) {
        QFile file(pathOf(number));
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (isThere(file.fileName()))
                continue;
            return {file.fileName(), file.errorString()};
        }
        const QString error = copy(content, &file);
        if (!error.isEmpty())
            file.remove();
        return {file.fileName(), error};
    }
}

NewFile writeNewFile(const NumberedPath &pathOf, const QByteArray &content)
{
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    return writeNewFile(pathOf, &buffer);
}

} // namespace Morvex
