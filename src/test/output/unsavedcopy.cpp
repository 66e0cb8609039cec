#include "test/output/unsavedcopy.h"

#include <QFile>

#include <unistd.h>

namespace Morvex {
namespace {

bool openFree(QFile *file, const QString &wanted)
{
    file->setFileName(wanted);
    for (int number = 2;
         !file->open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered); ++number) {
        if (!file->exists())
            return false;
        file->setFileName(QStringLiteral("%1_%2").arg(wanted, QString::number(number)));
    }
    return true;
}

} // namespace

UnsavedCopy::UnsavedCopy(const QString &path, const QByteArray &content)
{
    QFile file;
    if (!openFree(&file, path + QLatin1String(".unsaved")))
        return;
    if (file.write(content) == content.size() && ::fsync(file.handle()) == 0)
        m_path = file.fileName();
    else
        QFile::remove(file.fileName());
}

void UnsavedCopy::remove()
{
    if (!m_path.isEmpty() && QFile::remove(m_path))
        m_path.clear();
}

} // namespace Morvex
