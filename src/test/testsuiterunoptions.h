#pragma once

#include "test/testsuite.h"

#include <limits>

namespace Morvex {

/// What all attempts of a run have in common.
struct TestSuite::RunOptions
{
    QString host;
    int port;
    QString resultDir;
    double snoozeFactor;
    unsigned int timeoutSeconds;
    bool stopOnFail;
    int retryCount;
    QStringList envVars;
    bool interactive;
};

// Counts that travel on as int.
const unsigned int maxRetryCount = std::numeric_limits<int>::max();
const unsigned int maxTimeoutSeconds = std::numeric_limits<int>::max();

} // namespace Morvex
