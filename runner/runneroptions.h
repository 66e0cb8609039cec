#pragma once

#include "test/eventrecorder.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace Morvex {

/// What the command line asks for.
struct RunnerOptions
{
    enum class Action {
        Run,
        List,
        RepairReport,
        MergeReports,
        MigrateNames,
        Inspect,
        Record,
        Help,
        Version
    };

    Action action = Action::Run;
    /// The program and all of its arguments as they were given.
    QStringList commandLine;
    /// Empty: run a single test case of the suite in the current directory.
    QString suiteDirectory;
    QStringList reportGenerators;
    /// The directory of the web report that is to be repaired.
    QString reportToRepair;
    /// The web report to make, and then those to make it of.
    QStringList reportsToMerge;
    bool joinRuns = false;
    /// The program to inspect, and its arguments.
    QStringList inspectedProgram;
    /// Whether to print what the user clicks on in it.
    bool picks = false;
    /// The name of the test case to record, and the program with its arguments; without one that
    /// of the suite.
    QString recordedTestCase;
    QStringList recordedProgram;
    EventRecorder::Synchronization recordingSync = EventRecorder::OBJECT_SYNC;
    /// Whether to go on with a recording that was not finished.
    bool finishesRecording = false;
    /// How many runs of each suite a web report keeps; 0 for what the suite says.
    unsigned int keptRuns = 0;
    QStringList testCases;
    QStringList skippedTestCases;
    QStringList tags;
    QString settingsGroup;
    bool isRandom = false;
    /// Without one a random run picks a fresh number.
    std::optional<unsigned int> randomSeed;
    unsigned int retryCount = 0;
    /// 0 for no limit; without a value that of the suite.
    std::optional<unsigned int> timeoutSeconds;
    bool stopOnFail = false;
    bool rerunFailed = false;
    bool learn = false;
    bool coverage = false;
    bool pauseOnFailure = false;
    QStringList envVars;
    QString envVarFile;
    QStringList scriptArguments;
    QString resultDir;
    double snoozeFactor = 0;
    bool isInteractive = false;
    bool isVideoCaptureEnabled = false;

    // Kept for the application under test.
    QString host = QStringLiteral("127.0.0.1");
    int port = 4322;
    QStringList aut;
    QStringList wrappers;
    QString objectMap;
    QString cwd;
    bool hookSubProcesses = false;
    bool useWhiteList = false;
    QString applicationLauncher;
    QString launcherArguments;
    int suiteVersion = 1;
};

} // namespace Morvex
