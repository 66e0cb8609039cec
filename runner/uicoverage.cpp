#include "runner/uicoverage.h"

#include "objectmodel/inspector.h"
#include "runner/attachmentpath.h"
#include "runner/coveragepage.h"
#include "runner/messages.h"
#include "shared/files/writefile.h"
#include "shared/requestdumpobject.h"
#include "test/testresult.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Morvex {
namespace {

const char variable[] = "MORVEX_COVERAGE";

QString coverageDir()
{
    return QFile::decodeName(qgetenv(variable));
}

// Empty with an error when there is none.
QByteArray usageXml(QString *error)
{
    const QByteArray answer =
        Inspector::self()->askForReport(QStringLiteral("dumpUsage"), error).toByteArray();
    const QByteArray xml =
        error->isEmpty() ? convertDumpToXml(dumpOfAnswer(answer, error), error) : QByteArray();
    if (xml.isEmpty() && error->isEmpty())
        *error = QStringLiteral("The application's answer is empty.");
    return xml;
}

// Returns an error text, empty on success.
[[nodiscard]] QString writeFile(const QByteArray &content, const QString &path)
{
    const FileWriteResult written = writeFileSafely(path, content);
    return written.outcome == FileWriteResult::Written
               ? QString()
               : QStringLiteral("Cannot write '%1': %2").arg(path, written.error);
}

// Adds it to the report. Returns an error text, empty on success.
[[nodiscard]] QString attachNew(TestResult *result, const NumberedPath &pathOf,
                                TestResult::AttachmentType type, const QString &message,
                                const QByteArray &content)
{
    const NewFile file = writeNewFile(pathOf, content);
    if (!file.error.isEmpty())
        return QStringLiteral("Cannot write '%1': %2").arg(file.path, file.error);
    result->addAttachment(type, message, file.path, {LineInfo()});
    return {};
}

QString leaveUsage(TestResult *result, const QString &testCase, const QString &resultDir)
{
    QString error;
    const QByteArray xml = usageXml(&error);
    if (xml.isEmpty())
        return error;
    // A test case may use several applications.
    static int count = 0;
    const QString name = QStringLiteral("%1_%2_%3.xml")
                             .arg(testCase, QString::number(QCoreApplication::applicationPid()),
                                  QString::number(++count));
    error = writeFile(xml, QDir(coverageDir()).filePath(name));
    if (!error.isEmpty() || resultDir.isEmpty())
        return error;
    return attachNew(
        result, attachmentPath(resultDir, testCase, QFileInfo(QStringLiteral("uicoverage.xml"))),
        TestResult::UICOVERAGE_ATTACHMENT, QStringLiteral("UI coverage"), xml);
}

void warn(TestResult *result, const QString &details)
{
    result->addResult(TestResult::WARNING, QStringLiteral("UI coverage is not complete"), details);
}

} // namespace

QString startUsageCount()
{
    QString error;
    if (!coverageDir().isEmpty())
        Inspector::self()->askForReport(QStringLiteral("countUsage"), &error);
    return error;
}

void attachUsage(TestResult *result, const QString &testCase, const QString &resultDir,
                 const QString &startError)
{
    if (coverageDir().isEmpty() || !Inspector::self())
        return;
    const QString error =
        startError.isEmpty() ? leaveUsage(result, testCase, resultDir) : startError;
    if (!error.isEmpty())
        warn(result, error);
}

UiCoverage::UiCoverage()
    : m_root(nullptr, QStringLiteral("coverage"))
{
    if (m_dir.isValid())
        qputenv(variable, QFile::encodeName(m_dir.path()));
    else
        printMessage(QStringLiteral("warning: no UI coverage is counted: %1 (set TMPDIR to another "
                                    "directory)")
                         .arg(m_dir.errorString()));
}

UiCoverage::~UiCoverage()
{
    qunsetenv(variable);
}

void UiCoverage::collect()
{
    if (!m_dir.isValid())
        return;
    const QDir dir(m_dir.path());
    const QStringList names = dir.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QString error;
        if (!m_root.mergeXmlFiles({dir.filePath(name)}, error))
            printMessage(QStringLiteral("warning: UI coverage is not complete: %1").arg(error));
    }
}

void UiCoverage::attachPage(TestResult *result, const QString &resultDir) const
{
    if (resultDir.isEmpty() || m_root.coverageExpected(true) == 0)
        return;
    const QString error = attachNew(
        result, attachmentPath(resultDir, QString(), QFileInfo(QStringLiteral("uicoverage.html"))),
        TestResult::FILE_ATTACHMENT,
        QStringLiteral("UI coverage of the run: ") + coverageText(m_root), coveragePage(m_root));
    if (!error.isEmpty())
        warn(result, error);
}

void UiCoverage::print() const
{
    if (m_root.coverageExpected(true) == 0) {
        printMessage(QStringLiteral("UI coverage: there was nothing to use in the application"));
        return;
    }
    for (const BrowserElement *window : leastCoveredFirst(m_root)) {
        printMessage(QStringLiteral("UI coverage of %1: %2")
                         .arg(window->displayName(), coverageText(*window)));
    }
    printMessage(QStringLiteral("UI coverage: ") + coverageText(m_root));
}

} // namespace Morvex
