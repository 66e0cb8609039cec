#include "remote/processfacts.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <unistd.h>

namespace Morvex {
namespace {

// Places of /proc/PID/stat, counted from what follows on the name.
const int statePlace = 0;
const int parentPlace = 1;
const int userTimePlace = 11;
const int systemTimePlace = 12;

QByteArrayList afterName(const QByteArray &status)
{
    // The name may hold anything.
    return status.mid(status.lastIndexOf(')') + 2).split(' ');
}

} // namespace

ProcessFacts::ProcessFacts(qint64 processId)
    : m_directory(QStringLiteral("/proc/%1/").arg(processId))
{
}

QByteArray ProcessFacts::content(const char *file) const
{
    QFile source(m_directory + QLatin1String(file));
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

bool ProcessFacts::exists() const
{
    return !content("stat").isEmpty();
}

bool ProcessFacts::isRunning() const
{
    const QByteArray state = afterName(content("stat")).value(statePlace);
    return !state.isEmpty() && state != "Z" && state != "X";
}

bool ProcessFacts::isStopped() const
{
    const QByteArray state = afterName(content("stat")).value(statePlace);
    return state == "T" || state == "t";
}

qint64 ProcessFacts::parent() const
{
    return afterName(content("stat")).value(parentPlace).toLongLong();
}

quint64 ProcessFacts::usedMemory() const
{
    const quint64 pages = content("statm").split(' ').value(1).toULongLong();
    return pages * static_cast<quint64>(::sysconf(_SC_PAGESIZE));
}

quint64 ProcessFacts::totalTime() const
{
    const QByteArrayList values = afterName(content("stat"));
    const quint64 ticks =
        values.value(userTimePlace).toULongLong() + values.value(systemTimePlace).toULongLong();
    return ticks * 1000 / static_cast<quint64>(::sysconf(_SC_CLK_TCK));
}

QString ProcessFacts::environmentVariable(const QString &name) const
{
    const QByteArray start = name.toLocal8Bit() + '=';
    const QByteArrayList assignments = content("environ").split('\0');
    for (const QByteArray &assignment : assignments) {
        if (assignment.startsWith(start))
            return QString::fromLocal8Bit(assignment.mid(start.size()));
    }
    return {};
}

QString ProcessFacts::workingDirectory() const
{
    return QFileInfo(m_directory + QLatin1String("cwd")).symLinkTarget();
}

QString ProcessFacts::toolkit() const
{
    static const QRegularExpression library(
        QStringLiteral("libQt([56])Core[^/\n]*\\.so\\.([0-9.]+)"));
    const auto match = library.match(QString::fromLocal8Bit(content("maps")));
    return match.hasMatch() ? QLatin1String("Qt ") + match.captured(2) : QString();
}

} // namespace Morvex
