#include "runner/uicoverage.h"

#include "objectmodel/inspector.h"
#include "runner/attachmentpath.h"
#include "runner/messages.h"
#include "shared/browserelement.h"
#include "shared/requestdumpobject.h"
#include "shared/writefile.h"
#include "test/testresult.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace Morvex {
namespace {

const char variable[] = "MORVEX_COVERAGE";

QString coverageDir()
{
    return QFile::decodeName(qgetenv(variable));
}

QByteArray usageXml(QString *error)
{
    // The answer begins with a byte that tells a dump from an error.
    const QByteArray answer =
        Inspector::self()->callFunction(QStringLiteral("dumpUsage"), {}, error).toByteArray();
    return convertDumpToXml(answer.mid(1), error);
}

// Returns an error text, empty on success.
QString writeUsage(const QByteArray &xml, const QString &path)
{
    const FileWriteResult written = writeFileSafely(path, xml);
    return written.outcome == FileWriteResult::Written
               ? QString()
               : QStringLiteral("Cannot write '%1': %2").arg(path, written.error);
}

QString leaveUsage(TestResult *result, const QString &testCase, const QString &resultDir)
{
    QString error;
    const QByteArray xml = usageXml(&error);
    if (xml.isEmpty())
        return error;
    const QString name = QStringLiteral("%1_%2.xml")
                             .arg(testCase, QString::number(QCoreApplication::applicationPid()));
    error = writeUsage(xml, QDir(coverageDir()).filePath(name));
    if (!error.isEmpty() || resultDir.isEmpty())
        return error;
    const QString path =
        attachmentPath(resultDir, testCase, QFileInfo(QStringLiteral("uicoverage.xml")));
    error = writeUsage(xml, path);
    if (error.isEmpty()) {
        result->addAttachment(TestResult::UICOVERAGE_ATTACHMENT, QStringLiteral("UI coverage"),
                              path, {LineInfo()});
    }
    return error;
}

QString percentageOf(const BrowserElement &element)
{
    return QStringLiteral("%1 % (%2 of %3)")
        .arg(QString::number(element.coveragePercentage(true), 'f', 1),
             QString::number(element.coverageActual(true)),
             QString::number(element.coverageExpected(true)));
}

QList<const BrowserElement *> leastCoveredFirst(const BrowserElement &root)
{
    QList<const BrowserElement *> windows;
    for (const BrowserElement *window : root.children()) {
        if (window->coverageExpected(true) > 0)
            windows += window;
    }
    std::stable_sort(windows.begin(), windows.end(),
                     [](const BrowserElement *a, const BrowserElement *b) {
                         return a->coveragePercentage(true) < b->coveragePercentage(true);
                     });
    return windows;
}

} // namespace

void startUsageCount()
{
    if (!coverageDir().isEmpty())
        Inspector::self()->callFunction(QStringLiteral("countUsage"), {}, nullptr);
}

void attachUsage(TestResult *result, const QString &testCase, const QString &resultDir)
{
    if (coverageDir().isEmpty() || !Inspector::self())
        return;
    const QString error = leaveUsage(result, testCase, resultDir);
    if (!error.isEmpty()) {
        result->addResult(TestResult::WARNING, QStringLiteral("UI coverage is not complete"), error,
                          LineInfo(), QString(), -1);
    }
}

UiCoverage::UiCoverage()
{
    qputenv(variable, QFile::encodeName(m_dir.path()));
}

UiCoverage::~UiCoverage()
{
    qunsetenv(variable);
}

void UiCoverage::print() const
{
    const QDir dir(m_dir.path());
    QStringList files;
    const QStringList names = dir.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
    for (const QString &name : names)
        files += dir.filePath(name);
    BrowserElement root(nullptr, QStringLiteral("coverage"));
    QString error;
    if (!root.mergeXmlFiles(files, error))
        printMessage(QStringLiteral("warning: UI coverage is not complete: %1").arg(error));
    if (root.coverageExpected(true) == 0) {
        printMessage(QStringLiteral("UI coverage: there was nothing to use in the application"));
        return;
    }
    const QList<const BrowserElement *> windows = leastCoveredFirst(root);
    for (const BrowserElement *window : windows) {
        printMessage(QStringLiteral("UI coverage of %1: %2")
                         .arg(window->displayName(), percentageOf(*window)));
    }
    printMessage(QStringLiteral("UI coverage: ") + percentageOf(root));
}

} // namespace Morvex
