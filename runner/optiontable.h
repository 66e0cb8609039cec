#pragma once

#include "runner/runneroptions.h"

#include <QString>

#include <functional>
#include <vector>

namespace Morvex {

/// An option of the command line, with its line of the help text.
struct Option
{
    enum class Takes {
        Nothing,
        Value,
        /// The next argument if it is all digits.
        OptionalNumber,
        /// All arguments up to --scriptargs.
        Application,
        /// All that follows.
        Rest
    };

    enum class Section { Run, Environment, Recording, Information, Child };

    /// Returns an error text, empty on success.
    using Set = std::function<QString(RunnerOptions &, const QString &)>;

    const char *name;
    const char *placeholder;
    const char *help;
    Section section;
    Takes takes;
    Set set;
};

/// One table for the parser and for the help text.
const std::vector<Option> &optionTable();

} // namespace Morvex
