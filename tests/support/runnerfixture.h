#pragma once

#include "support/runnerprocess.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace MorvexTest {

/// Runs the runner on a suite of its own.
class RunnerFixture : public testing::Test
{
protected:
    void addPassing(const QStringList &names)
    {
        for (const QString &name : names)
            runner.addTestCase(name, "check.pass('p');");
    }

    /// What another program does with the runner, in the directory of the suite.
    RunnerOutput runBy(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.setProcessEnvironment(runner.environment);
        process.setWorkingDirectory(runner.suitePath());
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(500000)) << arguments.join(' ').toStdString();
        return outputOf(process);
    }

    static RunnerOutput outputOf(QProcess &process)
    {
        return {process.exitCode(), process.readAllStandardOutput(),
                process.readAllStandardError()};
    }

    RunnerProcess runner;
};

} // namespace MorvexTest
