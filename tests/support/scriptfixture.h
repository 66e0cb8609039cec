#pragma once

#include "support/runnerprocess.h"

#include <gtest/gtest.h>

namespace MorvexTest {

/// Runs scripts as the one test case of a suite; results gives what they logged.
class ScriptFixture : public testing::Test
{
protected:
    QStringList results(const QByteArray &script, const QStringList &options = {})
    {
        runner.addTestCase("tst_s", script);
        output = runner.runSuite(options);
        QStringList lines = RunnerProcess::resultsOf(output);
        // The frames of suite and test case.
        return lines.size() < 4 ? lines : lines.mid(2, lines.size() - 4);
    }

    RunnerProcess runner;
    RunnerOutput output;
};

} // namespace MorvexTest
