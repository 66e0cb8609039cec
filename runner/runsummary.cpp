#include "runner/runsummary.h"

#include "runner/messages.h"
#include "runner/runneroptions.h"
#include "runner/runoutcome.h"

#include <QRegularExpression>

namespace Morvex {
namespace {

const std::size_t slowestShown = 3;
const qint64 slowMilliseconds = 1000;

// The token of an upload and passwords must not get into a log.
QString withoutSecret(const QString &word)
{
    static const QRegularExpression secret(
        QStringLiteral("\\A((?:--reportgen=)?quillbase,[^?]*\\?|"
                       "(?:--envvar=)?\\w*(?:PASSW|SECRET|TOKEN)\\w*=)."),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = secret.match(word);
    return match.hasMatch() ? match.captured(1) + QLatin1String("...") : word;
}

QString inSeconds(qint64 milliseconds)
{
    return QString::number(static_cast<double>(milliseconds) / 1000, 'f', 1);
}

// The same command line with --rerun-failed, so that the test cases run as they did.
QString rerunCommand(const RunnerOptions &options)
{
    QStringList words;
    for (const QString &word : options.commandLine)
        words += shellQuoted(withoutSecret(word));
    if (!options.rerunFailed)
        words.insert(1, QStringLiteral("--rerun-failed"));
    return words.join(QLatin1Char(' '));
}

void printSlowest(const RunOutcome &outcome)
{
    QStringList shown;
    for (const RunOutcome::Duration &slow : outcome.slowest(slowestShown)) {
        if (slow.milliseconds >= slowMilliseconds)
            shown += QStringLiteral("%1 (%2 s)").arg(slow.testCase, inSeconds(slow.milliseconds));
    }
    if (!shown.isEmpty())
        printMessage(QLatin1String("slowest: ") + shown.join(QLatin1String(", ")));
}

} // namespace

void printSummary(const RunOutcome &outcome, const RunnerOptions &options, const RunEnd &end)
{
    const QStringList failed = outcome.failedTestCases();
    const QStringList flaky = outcome.flakyTestCases();
    for (const QString &name : failed)
        printMessage(QLatin1String("failed: ") + name);
    for (const QString &name : flaky)
        printMessage(QLatin1String("passed when retried: ") + name);
    printSlowest(outcome);
    QString counts =
        QStringLiteral("%1 %2, %3 failed")
            .arg(outcome.testCaseCount())
            .arg(QLatin1String(outcome.testCaseCount() == 1 ? "test case" : "test cases"))
            .arg(failed.size());
    if (!flaky.isEmpty())
        counts += QStringLiteral(", %1 passed when retried").arg(flaky.size());
    if (outcome.skippedCount() > 0)
        counts += QStringLiteral(", %1 skipped").arg(outcome.skippedCount());
    if (end.isInterrupted)
        counts += QLatin1String(", interrupted");
    printMessage(QStringLiteral("%1 in %2 s").arg(counts, inSeconds(end.milliseconds)));
    if (outcome.testCaseCount() == 0)
        printMessage(QStringLiteral("warning: no test case was run"));
    if (!failed.isEmpty())
        printMessage(QLatin1String("run just the failed ones again: ") + rerunCommand(options));
}

} // namespace Morvex
