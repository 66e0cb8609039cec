#include "runner/inspectprogram.h"

#include "remote/remoteapplication.h"
#include "remote/remoteinspector.h"
#include "runner/messages.h"
#include "runner/runneroptions.h"
#include "runner/screen.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

#include <cstdio>

namespace Morvex {
namespace {

// How long to wait for a first window, and for the windows to stay as they are.
const int windowTimeoutMs = 20000;
const int settlingMs = 300;
const int clickStepMs = 50;

// Empty when there is none.
QString programOf(const QString &name, const QString &prefix)
{
    const QString own = prefix + QLatin1String("/lib/applications/") + name;
    if (name.contains(QLatin1Char('/')))
        return QFileInfo(name).isFile() ? QFileInfo(name).absoluteFilePath() : QString();
    return QFileInfo(own).isFile() ? own : QStandardPaths::findExecutable(name);
}

// On one line of a terminal, whatever the application has in it.
QString printable(const QString &text)
{
    QString result;
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control)
            result += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        else
            result += character;
    }
    return result;
}

void print(int depth, const QString &text)
{
    std::printf("%s%s\n", QByteArray(2 * depth, ' ').constData(), qUtf8Printable(printable(text)));
}

class Inspection
{
public:
    explicit Inspection(RemoteApplication *application)
        : m_application(application)
    {
    }

    // Each returns an error text, empty on success.

    [[nodiscard]] QString printTree()
    {
        for (const QVariant &entry : settledTree()) {
            const QVariantList values = entry.toList();
            print(values.value(1).toInt(), values.value(2).toString());
        }
        return m_error;
    }

    [[nodiscard]] QString printClicks()
    {
        while (m_error.isEmpty()) {
            for (const QVariant &entry : call("takeClicked", {}).toList())
                printObject(entry.toList());
            std::fflush(stdout);
            QThread::msleep(clickStepMs);
        }
        // What ends it is the user.
        return m_application->isRunning() ? m_error : QString();
    }

private:
    QVariantList settledTree()
    {
        QElapsedTimer timer;
        timer.start();
        QVariantList before;
        while (m_error.isEmpty()) {
            QVariantList tree = call("nameTree", {}).toList();
            const bool isTooLate = timer.elapsed() > windowTimeoutMs;
            if (isTooLate && tree.isEmpty())
                m_error = QStringLiteral("the program has shown no window within %1 seconds")
                              .arg(windowTimeoutMs / 1000);
            if ((!tree.isEmpty() && tree == before) || isTooLate)
                return tree;
            before = tree;
            QThread::msleep(settlingMs);
        }
        return {};
    }

    void printObject(const QVariantList &object)
    {
        print(0, object.value(1).toString());
        const QVariantMap properties = call("objectProperties", {object.value(0)}).toMap();
        for (auto it = properties.cbegin(); it != properties.cend(); ++it)
            print(1, it.key() + QLatin1String(": ") + it->toString());
    }

    QVariant call(const char *function, const QVariantList &arguments)
    {
        QString error;
        const QVariant answer =
            m_application->inspector()->callFunction(QLatin1String(function), arguments, &error);
        // An object may no longer exist.
        if (!m_application->inspector()->failure().isEmpty())
            m_error = m_application->inspector()->failure();
        return answer;
    }

    RemoteApplication *m_application;
    QString m_error;
};

int unusable(const QString &error)
{
    printMessage(QLatin1String("--inspect: ") + error);
    return ExitUnusable;
}

} // namespace

int inspectProgram(const RunnerOptions &options)
{
    if (options.inspectedProgram.isEmpty())
        return unusable(QStringLiteral("no program was given"));
    if (options.picks && !whyNoScreen().isEmpty())
        return unusable(QStringLiteral("--pick needs a display"));
    RemoteApplication::Start start;
    start.prefix = QString::fromLocal8Bit(qgetenv("MORVEX_PREFIX"));
    start.command = options.inspectedProgram;
    start.command.first() = programOf(start.command.first(), start.prefix);
    if (start.command.first().isEmpty())
        return unusable(
            QStringLiteral("there is no program '%1'").arg(options.inspectedProgram.first()));
    QString error;
    const std::unique_ptr<RemoteApplication> application = RemoteApplication::start(start, &error);
    if (!application)
        return unusable(error);
    Inspection inspection(application.get());
    error = options.picks ? inspection.printClicks() : inspection.printTree();
    return error.isEmpty() ? ExitPassed : unusable(error);
}

} // namespace Morvex
