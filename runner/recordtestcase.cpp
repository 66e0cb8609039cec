#include "runner/recordtestcase.h"

#include "remote/remotecontext.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"
#include "runner/applicationsettings.h"
#include "runner/javascriptcode.h"
#include "runner/messages.h"
#include "runner/recordedactions.h"
#include "runner/recordedpoint.h"
#include "runner/recordedtestcase.h"
#include "runner/recordingjournal.h"
#include "runner/runneroptions.h"
#include "runner/screen.h"
#include "runner/signals.h"
#include "shared/points/pointtypes.h"
#include "shared/realpath.h"
#include "test/cancellation.h"
#include "test/testsuite.h"

#include <QFileInfo>
#include <QHash>
#include <QThread>

#include <cstdio>
#include <map>
#include <unistd.h>

namespace Morvex {
namespace {

const int stepMs = 20;

int unusable(const QString &error)
{
    printMessage(QLatin1String("--record: ") + error);
    return ExitUnusable;
}

// What applications report, into the journal.
class Recording
{
public:
    Recording(Applications *applications, RecordingJournal *journal,
              const QString &testCaseDirectory)
        : m_applications(applications)
        , m_journal(journal)
        , m_pointDirectory(testCaseDirectory + QLatin1String("/points/"))
    {
    }

    /// Until all have ended, or the cancellation. Returns an error text, empty on success.
    [[nodiscard]] QString run(const Cancellation &cancellation)
    {
        while (m_error.isEmpty() && !cancellation.isRequested()) {
            const bool isOver = m_applications->running().isEmpty();
            takeAll();
            if (isOver)
                break;
            QThread::msleep(stepMs);
        }
        takeAll();
        return m_error;
    }

    /// How one has ended that should not have; empty for none.
    QString death() const
    {
        const QList<Applications::Death> deaths = m_applications->deaths();
        return deaths.isEmpty() ? QString() : deaths.first().text;
    }

private:
    void takeAll()
    {
        for (const int id : m_applications->contexts())
            take(id);
    }

    void take(int id)
    {
        const std::shared_ptr<RemoteContext> context = m_applications->context(id);
        std::shared_ptr<RemoteInspector> &known = m_inspectors[id];
        if (known)
            takeFrom(id, known->session());
        const std::shared_ptr<RemoteInspector> now =
            context->isReady() ? context->inspector() : nullptr;
        if (!now || now == known || !context->end().isEmpty())
            return;
        known = now;
        add(startAction(id));
        const QString error = now->session().record();
        // One that has ended meanwhile has nothing to report.
        if (!error.isEmpty() && context->end().isEmpty())
            m_error = error;
    }

    void takeFrom(int id, RemoteSession &session)
    {
        session.update();
        for (const QVariant &entry : session.takeRecorded()) {
            QVariantMap action = entry.toMap();
            action[QStringLiteral("context")] = id;
            if (action.value(QStringLiteral("what")) == QLatin1String("point"))
                makePoint(id, &action);
            add(action);
        }
    }

    // At once: later the object looks different. One that can't be made is left out.
    void makePoint(int id, QVariantMap *action)
    {
        const PointRequest request{action->value(QStringLiteral("object")).toString(),
                                   action->value(QStringLiteral("type")).toString(),
                                   action->value(QStringLiteral("properties")).toStringList()};
        const QString name = pointName(request.type);
        m_applications->setCurrent(id);
        const QString error =
            makeRecordedPoint(m_pointDirectory + name + QLatin1String(".xml"), request);
        printMessage(error.isEmpty()
                         ? QStringLiteral("verification point '%1' was made").arg(name)
                         : QStringLiteral("the verification point was not made: %1").arg(error));
        action->insert(QStringLiteral("name"), name);
        if (!error.isEmpty())
            action->insert(QStringLiteral("what"), QStringLiteral("nothing"));
    }

    // One that no file has.
    QString pointName(const QString &type) const
    {
        static const QHash<QString, QString> words{
            {PointType::properties, QStringLiteral("properties")},
            {PointType::table, QStringLiteral("table")},
            {PointType::screenshot, QStringLiteral("picture")},
            {PointType::visual, QStringLiteral("look")}};
        const QString word = words.value(type, QStringLiteral("point"));
        int number = 1;
        while (QFileInfo::exists(
            QStringLiteral("%1%2_%3.xml").arg(m_pointDirectory, word, QString::number(number))))
            ++number;
        return QStringLiteral("%1_%2").arg(word, QString::number(number));
    }

    void add(const QVariantMap &action)
    {
        const QString error = m_journal->add(action);
        if (m_error.isEmpty())
            m_error = error;
    }

    Applications *m_applications;
    RecordingJournal *m_journal;
    const QString m_pointDirectory;
    std::map<int, std::shared_ptr<RemoteInspector>> m_inspectors;
    QString m_error;
};

QString startStatement(const QStringList &program, bool isImplicit)
{
    QStringList words;
    for (const QString &word : program)
        words += javaScriptString(word);
    return program.isEmpty() && isImplicit
               ? QString()
               : QStringLiteral("application.start(%1);").arg(words.join(QLatin1String(", ")));
}

// Paths are those of the user, who is elsewhere than the suite.
QStringList programOf(const RunnerOptions &options)
{
    QStringList program = options.recordedProgram;
    if (!program.isEmpty() && program.first().contains(QLatin1Char('/')))
        program.first() = QFileInfo(program.first()).absoluteFilePath();
    return program;
}

bool isFinishWanted(const RunnerOptions &options, const RecordingJournal &journal)
{
    if (options.finishesRecording)
        return true;
    const QString what =
        QStringLiteral("--record: '%1' is a recording that was not finished").arg(journal.path());
    if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) {
        printMessage(what + QStringLiteral("; --finish before --record makes the test case of it, "
                                           "and without the file a new recording begins"));
        return false;
    }
    printMessage(what);
    std::fprintf(stderr, "Make the test case of it? [y/n] ");
    const int answer = std::getchar();
    return answer == 'y' || answer == 'Y';
}

class Recorder
{
public:
    Recorder(const RunnerOptions &options, const QDir &suite)
        : m_options(options)
        , m_testCase(suite, options.recordedTestCase, options.recordingSync)
        , m_journal(m_testCase.directory())
    {
    }

    int finish()
    {
        const QString error = m_journal.load();
        return error.isEmpty() ? write() : unusable(error);
    }

    int record(const QStringList &program)
    {
        const TestSuite suite(QDir::current(), m_options.settingsGroup);
        Applications::Settings settings = applicationSettings(m_options);
        settings.hooksSubProcesses = settings.hooksSubProcesses || suite.hookSubProcesses();
        Applications applications({m_testCase.directory(), QDir::currentPath()}, settings);
        QString error = m_journal.create(startStatement(program, suite.implicitAutStart()));
        if (!error.isEmpty())
            return unusable(error);
        if (applications.start(program, {}, &error) < 0) {
            m_journal.remove();
            return unusable(error);
        }
        // To the end: a second signal leaves the journal as it is.
        Cancellation cancellation;
        const CancelOnSignals signal(&cancellation);
        const QString death = run(&applications, cancellation, &error);
        if (!error.isEmpty())
            return unusable(error);
        if (!death.isEmpty())
            printMessage(death + QStringLiteral("; what was done until then is recorded"));
        return write();
    }

    /// One that was ended before the application had started holds nothing.
    bool wasLeftBehind() const
    {
        if (!m_journal.exists())
            return false;
        RecordingJournal left(m_testCase.directory());
        if (!left.load().isEmpty() || !left.actions().isEmpty())
            return true;
        left.remove();
        return false;
    }
    const RecordingJournal &journal() const { return m_journal; }
    QString whyNot() const { return m_testCase.whyNot(); }

private:
    QString run(Applications *applications, const Cancellation &cancellation, QString *error)
    {
        printMessage(QStringLiteral("recording %1: use the application, and end it or press Ctrl+C "
                                    "here when you are done")
                         .arg(m_options.recordedTestCase));
        Recording recording(applications, &m_journal, m_testCase.directory());
        *error = recording.run(cancellation);
        return recording.death();
    }

    int write()
    {
        const QString error = m_testCase.write(m_journal);
        if (!error.isEmpty())
            return unusable(
                QStringLiteral("%1; the recording is in '%2'").arg(error, m_journal.path()));
        m_journal.remove();
        printMessage(QStringLiteral("'%1' is written").arg(m_testCase.scriptPath()));
        return ExitPassed;
    }

    const RunnerOptions &m_options;
    const RecordedTestCase m_testCase;
    RecordingJournal m_journal;
};

} // namespace

int recordTestCase(const RunnerOptions &options)
{
    const QDir suite(cleanedPath(options.suiteDirectory));
    if (options.suiteDirectory.isEmpty() || !suite.exists())
        return unusable(
            QStringLiteral("there is no suite directory '%1'").arg(options.suiteDirectory));
    const TestSuite read(suite, options.settingsGroup);
    if (read.hasConfigLoadError())
        return unusable(QStringLiteral("cannot load the suite '%1': %2")
                            .arg(options.suiteDirectory, read.configLoadErrorMsg().trimmed()));
    const QStringList program = programOf(options);
    Recorder recorder(options, QDir(suite.absolutePath()));
    const QString reason = recorder.whyNot();
    if (!reason.isEmpty())
        return unusable(reason);
    if (recorder.wasLeftBehind())
        return isFinishWanted(options, recorder.journal()) ? recorder.finish() : ExitUnusable;
    if (options.finishesRecording)
        return unusable(
            QStringLiteral("there is no recording '%1' to finish").arg(recorder.journal().path()));
    if (!hasScreen())
        return unusable(QStringLiteral("a display is needed"));
    if (!QDir::setCurrent(suite.absolutePath()))
        return unusable(QStringLiteral("cannot enter '%1'").arg(options.suiteDirectory));
    return recorder.record(program);
}

} // namespace Morvex
