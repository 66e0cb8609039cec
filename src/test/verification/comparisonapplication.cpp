#include "test/verification/comparisonapplication.h"

#include "shared/environment.h"

#include <QCoreApplication>
#include <QDir>
#include <QImageWriter>
#include <QProcess>
#include <QTemporaryFile>

namespace Morvex {
namespace {

QString textOf(const QByteArray &output)
{
    // The conversion of a plain pointer ends at the first NUL byte.
    return QString::fromUtf8(output.constData());
}

ApplicationComparison notRun(const QString &error)
{
    return {false, QString(), error};
}

// Error texts, empty on success.

[[nodiscard]] QString writeActual(QTemporaryFile &file, const QImage &image)
{
    if (!file.open())
        return QStringLiteral("Could not create temporary image (actual) file '%1': %2")
            .arg(file.fileName(), file.errorString());
    if (!QImageWriter(&file, QByteArrayLiteral("PNG")).write(image) || !file.flush())
        return QStringLiteral("Could not write actual image to temporary file '%1': %2")
            .arg(file.fileName(), file.errorString());
    file.close();
    return {};
}

[[nodiscard]] QString writeExpected(QTemporaryFile &file, const QImage &image)
{
    if (!file.open())
        return QStringLiteral("Could not create temporary image (expected) file '%1': %2")
            .arg(file.fileName(), file.errorString());
    QImageWriter writer(&file, QByteArrayLiteral("PNG"));
    if (!writer.write(image) || !file.flush())
        return QStringLiteral("Could not write expected image to temporary file '%1': %2")
            .arg(file.fileName(), writer.errorString());
    file.close();
    return {};
}

ApplicationComparison run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    // One that reads it would wait for ever.
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForStarted(-1))
        return notRun(QStringLiteral("Failed to start comparison application '%1': %2")
                          .arg(program, process.errorString()));
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(-1))
        return notRun(QStringLiteral("Waiting for comparison application '%1' failed: %2")
                          .arg(program, process.errorString()));
    const bool hasCrashed = process.exitStatus() == QProcess::CrashExit;
    // What ended it, by a signal or its handler, may be a request to all of this process's group to
    // end. Whoever watches for that has to hear of it first: this is not the fault of the
    // application.
    if (hasCrashed || process.exitCode() != 0)
        QCoreApplication::processEvents();
    if (hasCrashed)
        return notRun(QStringLiteral("The comparator process %1 has crashed: %2")
                          .arg(program, process.errorString()));
    QString details = textOf(process.readAllStandardOutput());
    if (details.isEmpty())
        details = textOf(process.readAllStandardError());
    return {process.exitCode() == 0, details, QString()};
}

} // namespace

ApplicationComparison runComparisonApplication(const QString &name, const QStringList &parameters,
                                               const QImage &actual, const QImage &expected)
{
    QTemporaryFile actualFile;
    QTemporaryFile expectedFile;
    QString error = writeActual(actualFile, actual);
    if (error.isEmpty())
        error = writeExpected(expectedFile, expected);
    if (!error.isEmpty())
        return notRun(error);
    const QString program = QString::fromStdString(Environment::getVariable("MORVEX_PREFIX")) +
                            QLatin1String("/bin") + QDir::separator() + name;
    return run(program, QStringList{actualFile.fileName(), expectedFile.fileName()} + parameters);
}

} // namespace Morvex
