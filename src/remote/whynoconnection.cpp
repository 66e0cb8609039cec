#include "remote/whynoconnection.h"

#include "remote/processfacts.h"
#include "remote/watchedprocess.h"

#include <QDir>
#include <QStringList>
#include <QVector>

namespace Morvex {
namespace {

const int minimalQt[] = {5, 15};
const int maxErrorsSize = 500;
const int maxErrorLines = 3;

qint64 parentOf(qint64 process)
{
    return ProcessFacts(process).parent();
}

// All below the watcher. A chain of parents is not longer than there are processes.
QVector<qint64> processesBelow(qint64 watcher)
{
    QVector<qint64> found;
    const QStringList names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &name : names) {
        qint64 parent = parentOf(name.toLongLong());
        for (int steps = 0; parent > 1 && parent != watcher && steps < names.size(); ++steps)
            parent = parentOf(parent);
        if (parent == watcher)
            found += name.toLongLong();
    }
    return found;
}

bool isTooOld(const QString &toolkit)
{
    const QStringList numbers = toolkit.section(QLatin1Char(' '), 1).split(QLatin1Char('.'));
    return numbers.value(0).toInt() == minimalQt[0] && numbers.value(1).toInt() < minimalQt[1];
}

// Of a loader that misses a library, say.
QString endOfErrors(const QByteArray &output)
{
    QStringList lines = QString::fromLocal8Bit(output.right(maxErrorsSize))
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines = lines.mid(lines.size() - maxErrorLines);
    return lines.isEmpty() ? QString()
                           : QStringLiteral("; its standard error ends with '%1'")
                                 .arg(lines.join(QLatin1String(" / ")));
}

QString whyNotTestable(const QVector<qint64> &processes)
{
    QString toolkit;
    for (const qint64 process : processes) {
        if (toolkit.isEmpty())
            toolkit = ProcessFacts(process).toolkit();
    }
    if (toolkit.isEmpty())
        return QStringLiteral("no Qt is loaded in its process. It has to be a program with windows "
                              "built with Qt 5.15; one that Qt is linked to statically has to link "
                              "the agent, too");
    if (toolkit.startsWith(QLatin1String("Qt 6")) || isTooOld(toolkit))
        return QStringLiteral("it was built with %1, not with Qt 5.15").arg(toolkit);
    return QStringLiteral("it was built with %1, but has no application object with windows, or "
                          "keeps the agent from being loaded")
        .arg(toolkit);
}

} // namespace

QString whyNoConnection(const QString &program, WatchedProcess &process, int waited,
                        const QStringList &unlisted)
{
    const QString end = process.endOfProgram();
    const QString errors = endOfErrors(process.standardError());
    const QString listed = unlisted.isEmpty() ? QString()
                                              : QStringLiteral("the white list does not name '%1'")
                                                    .arg(unlisted.join(QLatin1String("', '")));
    if (waited < 0)
        return QStringLiteral("'%1' %2 before it could be tested%3%4")
            .arg(program, end.isEmpty() ? QStringLiteral("has ended") : end,
                 listed.isEmpty() ? QString() : QLatin1String("; ") + listed, errors);
    const QVector<qint64> running = processesBelow(process.watcherId());
    const QString state = end.isEmpty() ? QStringLiteral("is running") : end;
    const QString reason =
        listed.isEmpty() && !running.isEmpty() ? whyNotTestable(running) : listed;
    return QStringLiteral("'%1' gives no access to its windows within %2 seconds; it %3%4%5")
        .arg(program, QString::number(waited / 1000.0), state,
             reason.isEmpty() ? QString() : QLatin1String(": ") + reason, errors);
}

} // namespace Morvex
