#pragma once

#include <QString>

namespace Morvex {

/// The program in a file.
struct ScriptFile
{
    QString text;
    /// Names the file; empty when it could be read.
    QString error;
    /// 0 when the error is that of no line.
    int errorLine = 0;
};

/// Refuses what the script engine would take for the end of the program: a file of zeros, as a
/// power loss leaves it, would pass with nothing tested.
ScriptFile readScriptFile(const QString &path);

} // namespace Morvex
