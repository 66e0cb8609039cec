#include "runner/recordedtestcase.h"

#include "runner/freeplace.h"
#include "runner/javascripteventrecorder.h"
#include "runner/javascriptobjectmap.h"
#include "runner/recordedactions.h"
#include "runner/recordingjournal.h"
#include "runner/visiblenames.h"
#include "shared/files/filelock.h"
#include "shared/files/writefile.h"
#include "test/names/namesfile.h"

#include "shared/xmltext.h"

#include <QFileInfo>

#include <algorithm>

namespace Morvex {
namespace {

// Which passwords a run has to be given; empty for none.
QString passwordNote(const QStringList &variables)
{
    if (variables.isEmpty())
        return {};
    return QStringLiteral("// Passwords are not recorded: run this with --envvar %1=...")
        .arg(variables.join(QLatin1String("=... --envvar ")));
}

const int namesWaitMs = 10000;

bool isTestCaseName(const QString &name)
{
    const auto isIllegal = [](QChar character) {
        return character == QLatin1Char('/') || character.category() == QChar::Other_Control;
    };
    return name.startsWith(QLatin1String("tst_")) &&
           std::none_of(name.begin(), name.end(), isIllegal);
}

QString scriptOf(const QString &note, const QString &start, const QStringList &statements)
{
    QStringList lines{note, start};
    lines.removeAll(QString());
    return (lines + statements).join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace

RecordedTestCase::RecordedTestCase(const QDir &suite, const QString &name,
                                   EventRecorder::Synchronization synchronization)
    : m_suite(suite)
    , m_name(name)
    , m_synchronization(synchronization)
{
}

QString RecordedTestCase::whyNot() const
{
    if (!isTestCaseName(m_name))
        return QStringLiteral(
                   "'%1' is not the name of a test case, which begins with tst_ and has no / "
                   "and no control characters")
            .arg(escapeControls(m_name));
    // A point of an earlier try may be there.
    const QStringList scripts =
        QDir(directory()).entryList({QStringLiteral("script.*"), QStringLiteral("*.feature")});
    if (!scripts.isEmpty() || (QFileInfo::exists(directory()) && !QFileInfo(directory()).isDir()))
        return QStringLiteral("the test case '%1' already exists").arg(directory());
    const JavaScriptObjectMap names(m_suite.filePath(QStringLiteral("names.js")));
    const NamesFileError error = names.error();
    if (!error.text.isEmpty())
        return error.toString();
    return names.hasCodeInsertionPos()
               ? QString()
               : QStringLiteral("'%1' has no line that ends in %2, above which recorded names are "
                                "added: add a comment that does")
                     .arg(m_suite.filePath(QStringLiteral("names.js")), insertionMarker);
}

QString RecordedTestCase::write(const RecordingJournal &journal) const
{
    // Names that another recorder adds at the same time must not be lost.
    const FileLock lock(m_suite.path(), namesWaitMs);
    if (lock.isHeldElsewhere())
        return QStringLiteral("another process uses '%1'").arg(m_suite.path());
    const QString reason = whyNot();
    if (!reason.isEmpty())
        return reason;
    JavaScriptObjectMap names(m_suite.filePath(QStringLiteral("names.js")));
    JavaScriptEventRecorder recorder(m_synchronization == EventRecorder::NO_SYNC,
                                     m_synchronization == EventRecorder::OBJECT_SYNC, &names);
    const QVariantList actions = withVisibleNames(journal.actions(), [&names](const QString &name) {
        return !names.existingSymbolicName(ObjectName(name)).isEmpty();
    });
    QStringList variables;
    for (const EventData &event :
         eventsOfActions(actions, m_synchronization == EventRecorder::OBJECT_SYNC,
                         m_synchronization == EventRecorder::SNOOZE_SYNC)) {
        if (event.methodName() == QLatin1String("typePassword"))
            variables += event.arguments().at(0).value;
        recorder.queueEvent(event);
    }
    recorder.dequeueEvents();
    variables.removeDuplicates();
    if (!names.createdNames().isEmpty()) {
        const QString error = names.saveOrKeep();
        if (!error.isEmpty())
            return error;
    }
    if (!QDir().mkpath(directory()))
        return QStringLiteral("cannot make the directory '%1'").arg(directory());
    return place(scriptOf(passwordNote(variables), journal.start(), recorder.lines()).toUtf8());
}

// Someone may have written the script meanwhile.
QString RecordedTestCase::place(const QByteArray &script) const
{
    const QString draft = directory() + QLatin1String("/.recorded.js");
    const FileWriteResult written = writeFileSafely(draft, script);
    if (written.outcome != FileWriteResult::Written)
        return QStringLiteral("cannot write '%1': %2").arg(draft, written.error);
    const int number = moveToFreePlace(QFile::encodeName(draft), QFile::encodeName(scriptPath()));
    QFile::remove(draft);
    return number == 0
               ? QString()
               : QStringLiteral("cannot write '%1': %2").arg(scriptPath(), qt_error_string(number));
}

} // namespace Morvex
