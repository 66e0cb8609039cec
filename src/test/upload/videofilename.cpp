#include "test/upload/videofilename.h"

#include <QFileInfo>
#include <QMap>
#include <QMutex>

namespace Morvex {

QString makeFileName(const QString &path, bool create)
{
    static QMutex mutex;
    static QMap<QString, QString> names;
    static int videoCount = 0;
    const QMutexLocker locker(&mutex);
    const auto known = names.constFind(path);
    if (!create && known != names.constEnd())
        return known.value();
    const QFileInfo file(path);
    const QString name =
        QStringLiteral("%1_%2.%3")
            .arg(file.baseName(), QString::number(videoCount++), file.completeSuffix());
    names.insert(path, name);
    return name;
}

} // namespace Morvex
