#pragma once

#include "runner/runneroptions.h"

#include <QString>
#include <QStringList>

namespace Morvex {

/// Options of a command line, or a text in one line that says what is wrong with it.
struct CommandLine
{
    RunnerOptions options;
    QString error;
};

/// @p arguments without the name of the program.
CommandLine parseCommandLine(const QStringList &arguments);

/// The text of --help.
QString helpText();

} // namespace Morvex
