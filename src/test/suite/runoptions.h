#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

/// What all attempts of a run have in common.
struct RunOptions
{
    QString host;
    int port = 0;
    /// Empty for none.
    QString resultDir;
    /// 0 and less leave the pauses of scripts as they are.
    double snoozeFactor = 0;
    /// 0 for no limit.
    unsigned int timeoutSeconds = 0;
    bool stopOnFail = false;
    unsigned int retryCount = 0;
    /// 0 keeps the order.
    unsigned int randomSeed = 0;
    /// "NAME=value".
    QStringList envVars;
    bool interactive = false;
};

struct RecordOptions
{
    QString host;
    int port = 0;
    QStringList testData;
    bool disableEventCompression = false;
    bool useWaitFor = false;
    bool useScriptedObjectMap = false;
    QStringList envVars;
};

} // namespace Morvex
