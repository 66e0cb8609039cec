#include "runner/runcommand.h"
#include "runner/runnerlibrary.h"
#include "runner/testcaseapplications.h"

// The one symbol that the program looks up.
extern "C" [[gnu::visibility("default")]] const Morvex::RunnerLibrary morvexRunnerLibrary = {
    Morvex::runCommand, Morvex::makeTestCaseApplications};
