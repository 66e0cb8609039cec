#include "runner/recordtestcase.h"

#include "remote/remotecontext.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"
#include "runner/applicationsettings.h"
#include "runner/environmentfile.h"
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
#include "test/suite/applicationwords.h"
#include "test/testsuite.h"

#include <QFileInfo>
#include <QHash>
#include <QThread>

#include <cstdio>
#include <map>
#include <optional>
#include <unistd.h>

namespace Morvex {
namespace {

const int stepMs = 20;
const int maxPoints = 1000;

int unusable(const QString &error)
{
    printMessage(QLatin1String("--record: ") + error);
    return ExitUnusable;
}

QString nothingDone()
{
    return QStringLiteral("nothing was done, so no test case is written");
}

// What applications report, into the journal.
class Recording
{
public:
    Recording(Applications *applications, RecordingJournal *journal,
              const QString &testCaseDirectory, const Cancellation &cancellation)
        : m_applications(applications)
        , m_journal(journal)
        , m_pointDirectory(testCaseDirectory + QLatin1String("/points/"))
        , m_cancellation(cancellation)
    {
    }

    /// Until all have ended, or the cancellation. Returns an error text, empty on success.
    [[nodiscard]] QString run()
    {
        while (m_error.isEmpty() && !m_cancellation.isRequested()) {
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
        const QString error = now->session().record();
        add(startAction(id));
        // One that has ended meanwhile has nothing to report.
        if (!error.isEmpty() && context->end().isEmpty() && !m_cancellation.isRequested())
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
        const bool isOneTooMany = m_points == maxPoints;
        const QString name = isOneTooMany ? QString() : pointName(request.type);
        m_applications->setCurrent(id);
        const QString error =
            isOneTooMany
                ? QStringLiteral("a recording makes %1 at most").arg(maxPoints)
                : makeRecordedPoint(m_pointDirectory + name + QLatin1String(".xml"), request);
        m_points += error.isEmpty() ? 1 : 0;
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
    const Cancellation &m_cancellation;
    std::map<int, std::shared_ptr<RemoteInspector>> m_inspectors;
    int m_points = 0;
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

bool isSameProgram(const QStringList &program, const QStringList &other)
{
    return program.mid(1) == other.mid(1) &&
           QFileInfo(program.first()).fileName() == QFileInfo(other.first()).fileName();
}

// Paths are relative to the directory of the user, which is not that of the suite.
QStringList programOf(const RunnerOptions &options)
{
    QStringList program = options.recordedProgram;
    if (!program.isEmpty() && program.first().contains(QLatin1Char('/')))
        program.first() = QFileInfo(program.first()).absoluteFilePath();
    return program;
}

bool isAgreed(const char *question)
{
    if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0)
        return false;
    std::fprintf(stderr, "%s [y/n] ", question);
    const int answer = std::getchar();
    // The prompt has no line end when the input has ended.
    if (answer == EOF)
        std::fputc('\n', stderr);
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

    QString whyNot() const { return m_testCase.whyNot(); }

    /// Makes the test case of a recording that was not finished, if the user wants that. Nothing
    /// when it can be recorded.
    std::optional<int> finish()
    {
        if (!m_journal.exists())
            return {};
        const QString error = m_journal.load();
        if (!error.isEmpty())
            return unusable(error);
        // A recorder that was ended before the application had started.
        if (!m_journal.hasUserActions()) {
            m_journal.remove();
            m_journal.clear();
            return {};
        }
        if (!m_options.finishesRecording)
            printMessage(
                QStringLiteral("--record: '%1' is a recording that was not finished; --finish "
                               "before --record makes the test case of it, and without the "
                               "file a new recording begins")
                    .arg(m_journal.path()));
        return m_options.finishesRecording || isAgreed("Make the test case of it?") ? write()
                                                                                    : ExitUnusable;
    }

    QString whyNothingToFinish() const
    {
        return QStringLiteral("there is no recording '%1' to finish").arg(m_journal.path());
    }

    int record(const QStringList &program)
    {
        const TestSuite suite(QDir::current(), m_options.settingsGroup);
        Applications::Settings settings = applicationSettings(m_options);
        settings.hooksSubProcesses = settings.hooksSubProcesses || suite.hookSubProcesses();
        Cancellation cancellation;
        // To the end: a second signal leaves the journal as it is.
        const CancelOnSignals signal(&cancellation);
        Applications *started = nullptr;
        // A call that waits for an application that hangs ends, too.
        settings.idle = [&cancellation, &started] {
            if (cancellation.isRequested() && started)
                closeAll(started);
        };
        settings.isCancelled = [&cancellation] { return cancellation.isRequested(); };
        Applications applications({m_testCase.directory(), QDir::currentPath()}, settings);
        started = &applications;
        const QStringList ofSuite =
            suite.implicitAutStart() ? applicationWords(suite.aut()) : QStringList();
        // Runs start both.
        if (!program.isEmpty() && !ofSuite.isEmpty() && !isSameProgram(program, ofSuite))
            return unusable(QStringLiteral("'%1' is started before the script of each test case of "
                                           "the suite: say IMPLICITAUTSTART = 0 in suite.conf, or "
                                           "leave out the program")
                                .arg(suite.aut()));
        QString error = m_journal.create(
            startStatement(ofSuite.isEmpty() ? program : QStringList(), !ofSuite.isEmpty()));
        if (!error.isEmpty())
            return unusable(error);
        if (applications.start(program, {}, &error) < 0) {
            m_journal.remove();
            return unusable(cancellation.isRequested() ? nothingDone() : error);
        }
        const QString death = run(&applications, cancellation, &error);
        if (!error.isEmpty())
            return unusable(error +
                            QStringLiteral("; the recording has ended, and the application with "
                                           "it. What was done before is in '%1'; --finish before "
                                           "--record makes the test case of it")
                                .arg(m_journal.path()));
        if (!death.isEmpty())
            printMessage(death + QStringLiteral("; what was done until then is recorded"));
        return write();
    }

private:
    static void closeAll(Applications *applications)
    {
        for (const int id : applications->contexts())
            applications->context(id)->close(QStringLiteral("the recording has ended"));
    }

    QString run(Applications *applications, const Cancellation &cancellation, QString *error)
    {
        printMessage(QStringLiteral("recording %1: use the application, and end it or press Ctrl+C "
                                    "here when you are done")
                         .arg(m_options.recordedTestCase));
        Recording recording(applications, &m_journal, m_testCase.directory(), cancellation);
        *error = recording.run();
        return recording.death();
    }

    int write()
    {
        if (!m_journal.hasUserActions()) {
            m_journal.remove();
            return unusable(nothingDone());
        }
        const QString error = m_testCase.write(m_journal);
        if (!error.isEmpty())
            return unusable(
                QStringLiteral("%1; the recording is in '%2', and --finish before --record makes "
                               "the test case of it")
                    .arg(error, m_journal.path()));
        m_journal.remove();
        printMessage(QStringLiteral("'%1' was written").arg(m_testCase.scriptPath()));
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
    if (options.suiteDirectory.isEmpty())
        return unusable(QStringLiteral("no suite directory was given"));
    if (!suite.exists())
        return unusable(
            QStringLiteral("there is no suite directory '%1'").arg(options.suiteDirectory) +
            suiteDirectoryHint(options));
    const TestSuite read(suite, options.settingsGroup);
    if (read.hasConfigLoadError())
        return unusable(QStringLiteral("cannot load the suite '%1': %2")
                            .arg(options.suiteDirectory, read.configLoadErrorMsg().trimmed()));
    const QStringList program = programOf(options);
    Recorder recorder(options, QDir(suite.absolutePath()));
    const QString reason = recorder.whyNot();
    if (!reason.isEmpty())
        return unusable(reason);
    if (const std::optional<int> status = recorder.finish())
        return *status;
    if (options.finishesRecording)
        return unusable(recorder.whyNothingToFinish());
    const QString noScreen = whyNoScreen();
    if (!noScreen.isEmpty())
        return unusable(noScreen);
    const QString variables = setEnvironmentVariables(
        environmentFileOf(options.envVarFile, read.envVarFileName()), options.envVars);
    if (!variables.isEmpty())
        return unusable(variables);
    // Its paths are those of the user as well.
    passOnApplicationOptions(options, read);
    if (!QDir::setCurrent(suite.absolutePath()))
        return unusable(QStringLiteral("cannot enter '%1'").arg(options.suiteDirectory));
    return recorder.record(program);
}

} // namespace Morvex
