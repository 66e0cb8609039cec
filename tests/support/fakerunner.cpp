#include "support/fakerunner.h"

#include "support/files.h"

#include <QFile>
#include <QStringList>

namespace MorvexTest {

FakeRunner::FakeRunner(const QByteArray &script)
    : m_prefix("MORVEX_PREFIX", m_dir.path().toLocal8Bit())
{
    const QString path = m_dir.filePath("bin/morvexrunner");
    const QString record = m_dir.filePath("arguments");
    writeFile(path, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + record.toLocal8Bit() + ".new'\nmv '" +
                        record.toLocal8Bit() + ".new' '" + record.toLocal8Bit() +
                        "'\nfor argument in \"$@\"; do case $argument in raw,*) "
                        "socket=${argument#raw,};; esac; done\n" +
                        script + "\n");
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QStringList FakeRunner::arguments() const
{
    QStringList lines = QString::fromLocal8Bit(readFile(m_dir.filePath("arguments"))).split('\n');
    lines.removeLast();
    return lines;
}

} // namespace MorvexTest
