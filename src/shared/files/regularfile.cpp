#include "shared/files/regularfile.h"

#include <QFile>
#include <QFileInfo>

namespace Morvex {

QString openRegularFile(QFile *file, QIODevice::OpenMode mode)
{
    const QFileInfo info(*file);
    if (info.exists() && !info.isFile())
        return QStringLiteral("it is not a regular file");
    return file->open(mode) ? QString() : file->errorString();
}

} // namespace Morvex
