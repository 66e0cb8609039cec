#include "support/runnerprocess.h"

#include "support/files.h"

#include <QProcess>
#include <QRegularExpression>

namespace MorvexTest {

RunnerProcess::RunnerProcess()
    : environment(QProcessEnvironment::systemEnvironment())
{
    environment.insert("MORVEX_USER_SETTINGS_DIR", m_dir.filePath("settings"));
    for (const char *name : {"MORVEX_PREFIX", "MORVEX_NOREPORTSUMMARY", "CLICOLOR_FORCE"})
        environment.remove(name);
    addFile("suite.conf", "VERSION = 3\n");
}

QString RunnerProcess::program()
{
    return MORVEX_TEST_PREFIX "/bin/morvexrunner";
}

QString RunnerProcess::suitePath() const
{
    return m_dir.filePath("suite");
}

void RunnerProcess::addTestCase(const QString &name, const QByteArray &script)
{
    addFile(name + "/script.js", script);
}

void RunnerProcess::addFile(const QString &name, const QByteArray &content)
{
    writeFile(suitePath() + "/" + name, content);
}

RunnerOutput RunnerProcess::runSuite(const QStringList &options)
{
    QStringList arguments = options;
    const int scriptArguments = options.indexOf("--scriptargs");
    arguments.insert(scriptArguments < 0 ? options.size() : scriptArguments, suitePath());
    return run(arguments);
}

RunnerOutput RunnerProcess::run(const QStringList &arguments, const QString &workingDir)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingDir.isEmpty() ? m_dir.path() : workingDir);
    process.start(program(), arguments);
    if (!process.waitForFinished(500000))
        process.kill();
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

std::vector<ConsoleLine> RunnerProcess::report(const RunnerOutput &output)
{
    std::vector<ConsoleLine> lines;
    for (const QByteArray &line : output.standardOutput.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        if (fields.size() == 4)
            lines.push_back({QString::fromUtf8(fields[1]).trimmed(),
                             QString::fromUtf8(fields[2]).trimmed(), QString::fromUtf8(fields[3])});
    }
    return lines;
}

QStringList RunnerProcess::resultsOf(const RunnerOutput &output)
{
    QStringList results;
    for (const ConsoleLine &line : report(output)) {
        static const QRegularExpression place("^/[^:]*:[0-9]+: ?");
        results += line.type + " " + QString(line.left).remove(place) + "|" + line.right;
    }
    return results;
}

QStringList RunnerProcess::startsOf(const RunnerOutput &output)
{
    QStringList names;
    for (const ConsoleLine &line : report(output)) {
        if (line.type == "START_TEST_CASE")
            names += line.left.section('\'', 1, 1);
    }
    return names;
}

} // namespace MorvexTest
